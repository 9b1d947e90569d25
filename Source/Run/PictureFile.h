// The picture that a run is to leave, if one is asked for: draws it from the document's reports and
// writes it. Owned by the runner, on its thread, while the calculator is parked.
#pragma once

#include <memory>

#include "Run/RunPainter.h"

class AtomicFile;
class RunnerOutput;
class SimulationDocument;

class PictureFile {
public:
    // Takes the document's reports from now on. Nothing is owned.
    PictureFile(const Options& options, const ProgramResources& resources,
                const RunnerOutput& output, SimulationDocument* document);
    ~PictureFile();
    PictureFile(const PictureFile&) = delete;
    PictureFile& operator=(const PictureFile&) = delete;

    // Instead of a run: the bodies as they are.
    void TakeBodies();
    // These two return an exit status.
    [[nodiscard]] int CheckPlace() const;
    [[nodiscard]] int Write() const;

private:
    [[nodiscard]] int Fail(const AtomicFile& file) const;

    const Options& options_;
    const RunnerOutput& output_;
    SimulationDocument* const document_;
    std::unique_ptr<RunPainter> painter_;  // null: no picture is asked for
};
