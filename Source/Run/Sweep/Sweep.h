// A sweep: many runs of one document, each with other edits, a line of a file for each. A value
// that is wrong is reported before anything runs. Main thread; make it before any other thread,
// for it blocks the signals that stop it.
#pragma once

#include <string>

#include "Platform/Application/BMessage.h"
#include "Run/RunEvents.h"
#include "Run/RunnerOutput.h"
#include "Run/Sweep/SweepPlan.h"

class ProgramResources;
class Ranks;
class SweepFile;
class SweepTeam;
struct Options;

class Sweep {
public:
    // None is owned. `ranks`: those that make runs, too; null: none.
    Sweep(const Options& options, const ProgramResources& resources, Ranks* ranks);

    // The exit status.
    int Run();

private:
    [[nodiscard]] std::string DocumentName() const;
    int Prepare();
    int Open(SweepFile* file, const std::string& path);
    int ReadDocument();
    int CheckValues() const;
    int MakeRuns(SweepFile* file, const std::string& path);
    [[nodiscard]] std::string Mark() const;

    const Options& options_;
    const ProgramResources& resources_;
    Ranks* const ranks_;
    const RunnerOutput output_;
    RunEvents events_;  // before the threads of what follows
    SweepPlan plan_;
    BMessage record_;
};
