// The document that is kept beside the output while a run goes on, with the run in it; and the run
// that is found in such a one. Owned by the runner, and used on its thread.
#pragma once

#include <chrono>
#include <optional>

#include "Resources/Runner.h"
#include "Run/RunRecord.h"

struct DocumentError;
class ProgramResources;
class RunnerOutput;
class SimulationDocument;
struct Options;

class Checkpoints {
public:
    // None is owned.
    Checkpoints(const Options& options, const ProgramResources& resources,
                const RunnerOutput& output, SimulationDocument* document);

    // The document holds a run, and the calculator takes it; or why not. Before a run.
    [[nodiscard]] std::optional<RunnerText> FindRun(const BMessage& record, RunRecord* run) const;

    [[nodiscard]] bool AreWanted() const;
    // Whether one could be kept; nothing if none is wanted.
    [[nodiscard]] DocumentError CanWrite() const;
    // The interval begins.
    void Start();
    [[nodiscard]] bool IsDue() const;
    // ms
    [[nodiscard]] int UntilDue() const;
    // While the calculator is at rest; `now` lacks only what the calculator knows. A run does not
    // end because of a checkpoint that cannot be kept.
    void Write(RunRecord now);
    // The run is done.
    void Remove() const;

private:
    DocumentError Store(RunRecord* now, BMessage* record) const;
    [[nodiscard]] double SinceLast() const;

    const Options& options_;
    const ProgramResources& resources_;
    const RunnerOutput& output_;
    SimulationDocument* const document_;
    std::chrono::steady_clock::time_point last_;
};
