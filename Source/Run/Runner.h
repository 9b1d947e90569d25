// One use of the program: reads a document, runs it as the window's Go and Pause do, and writes
// what was asked for. Main thread; make it before any other thread, for it blocks the signals that
// stop it.
#pragma once

#include <optional>
#include <string>

#include "Model/Sharing/ModelGuards.h"
#include "Run/Checkpoints.h"
#include "Run/CollisionWatch.h"
#include "Run/LiveRun.h"
#include "Run/MotionFiles.h"
#include "Run/Options.h"
#include "Run/PictureFile.h"
#include "Run/ReportFile.h"
#include "Run/RunEvents.h"
#include "Run/RunFilm.h"
#include "Run/RunRecord.h"
#include "Run/RunRecorder.h"
#include "Run/RunSummary.h"
#include "Run/RunnerOutput.h"
#include "Run/UntilText.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SystemState.h"

class Ranks;

class Runner : private RunControlView {
public:
    static constexpr int kDone = RunnerOutput::kDone;
    static constexpr int kCouldNot = RunnerOutput::kCouldNot;
    static constexpr int kUsage = 2;
    static constexpr int kCouldNotGoOn = 3;
    static constexpr int kStoppedBySignal = 128;  // plus the signal's number

    // None is owned. `ranks`: those that share the calculation; null: none.
    Runner(const Options& options, const ProgramResources& resources, Ranks* ranks);
    ~Runner() override;

    // The exit status.
    int Run();

private:
    [[nodiscard]] std::string DocumentName() const;
    DocumentError ReadRecord(BMessage* record) const;
    int LoadDocument();
    int EditDocument();
    int RunDocument();
    int WriteWithoutRun();
    int FindTarget();
    // The text that tells why the run cannot be what was asked for, if so.
    [[nodiscard]] std::optional<int32> FindObstacle();
    void RunStarting() override;
    void Resume();
    void BeginReports(const SystemState& state);
    void PrintEnding();
    [[nodiscard]] int EndStatus() const;
    int PrintListings();
    int WriteResults();
    int Save();
    int PrintSummary();
    template <typename Value>
    [[nodiscard]] Value OfFocus(Value (AbEpoch::*value)() const) {
        const ReadGuard guard(document_.Portal());
        return (document_.Portal()->FocusEpoch()->*value)();
    }
    [[nodiscard]] RunSummary::Chaos LookForChaos();
    [[nodiscard]] RunSummary Summarize();

    const Options& options_;
    const ProgramResources& resources_;
    const RunnerOutput output_;
    RunEvents events_;  // before the threads of what follows
    CollisionWatch collisions_;
    SimulationDocument document_;
    RunControl control_;
    SimulationController controller_;
    RunRecorder recorder_;
    ReportFile reports_;
    MotionFiles motion_;
    Checkpoints checkpoints_;
    PictureFile picture_;
    RunFilm film_;
    LiveRun live_;
    RunRecord& run_;  // its record
};
