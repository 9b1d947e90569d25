// One run of a sweep: a document of its own, edited, run on one thread of calculation, and what
// came of it as the columns of a line. Made, used and destroyed by one thread, for one run; any
// number of them may be at work side by side.
#pragma once

#include <atomic>
#include <optional>
#include <semaphore>
#include <string>
#include <vector>

#include "Model/Sharing/Observer.h"
#include "Run/CollisionWatch.h"
#include "Run/RunGoal.h"
#include "Run/RunRecorder.h"
#include "Run/RunSummary.h"
#include "Run/Sweep/SweepEvents.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/Document/RunTarget.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SystemState.h"

class ProgramResources;
struct Options;

class SweepRun : private RunControlView, private Observer {
public:
    // Neither is owned.
    SweepRun(const Options& options, const ProgramResources& resources);
    ~SweepRun() override;

    // Takes over the document's record, and makes these edits after those that all runs have. The
    // answer is empty, or says why there can be no such run.
    [[nodiscard]] std::optional<std::string> Prepare(const BMessage& record,
                                                     const std::vector<std::string>& edits);
    // Runs to the end. False: it was stopped before.
    [[nodiscard]] bool Run(const std::atomic<bool>& isStopped);

    // The heads of the columns, and the columns after the run, or of one that cannot be.
    [[nodiscard]] static std::string HeadColumns(const Options& options);
    [[nodiscard]] std::string EndColumns();
    [[nodiscard]] static std::string NoColumns(const Options& options, const std::string& reason);

private:
    [[nodiscard]] std::optional<std::string> Edit(const std::vector<std::string>& edits);
    [[nodiscard]] std::optional<std::string> FindTarget();
    [[nodiscard]] std::optional<std::string> FindBodies();
    void RunStarting() override;
    // Observer, on any thread.
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }
    [[nodiscard]] bool WaitForParking(const std::atomic<bool>& isStopped);
    [[nodiscard]] bool ResolveCollision();
    [[nodiscard]] RunSummary Summarize(const SystemState& end);

    const Options& options_;
    const ProgramResources& resources_;
    std::counting_semaphore<> parked_{0};
    std::atomic<bool> wasTooDeep_ = false;
    CollisionWatch collisions_;
    SimulationDocument document_;
    RunControl control_;
    SimulationController controller_;
    RunRecorder recorder_;
    std::vector<int64> bodies_;  // those that have columns
    RunTarget target_{.kind = RunTarget::Kind::kNone};
    bool stopsAtCollision_ = false;
    SystemState start_;
    MergerTotals mergers_;
    SweepEvents events_;
    BMessage touches_;
    std::optional<RunEnding> ending_;
};
