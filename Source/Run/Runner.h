// One use of the program: reads a document, runs it as the window's Go and Pause do, and writes
// what was asked for. Main thread; make it before any other thread, for it blocks the signals that
// stop it.
#pragma once

#include <optional>
#include <string>

#include "Model/Sharing/ModelGuards.h"
#include "Run/Checkpoints.h"
#include "Run/CollisionWatch.h"
#include "Run/MotionFiles.h"
#include "Run/Options.h"
#include "Run/PictureFile.h"
#include "Run/Progress.h"
#include "Run/ReportFile.h"
#include "Run/RunEvents.h"
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

class Runner : private RunControlView {
public:
    static constexpr int kDone = RunnerOutput::kDone;
    static constexpr int kCouldNot = RunnerOutput::kCouldNot;
    static constexpr int kUsage = 2;
    static constexpr int kCouldNotGoOn = 3;
    static constexpr int kStoppedBySignal = 128;  // plus the signal's number

    Runner(const Options& options, const ProgramResources& resources);
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
    void WaitForEnd();
    [[nodiscard]] std::optional<int> Patience(const Progress& progress) const;
    [[nodiscard]] bool HandleEvent(RunEvents::Event event, Progress* progress);
    [[nodiscard]] bool KeepCheckpoint(Progress* progress);
    void Interrupt(Progress* progress);
    [[nodiscard]] bool Hold(Progress* progress);
    void WriteCheckpoint();
    [[nodiscard]] double Seconds() const;
    const Conserved& StartConserved();
    [[nodiscard]] bool ResolveCollision(Progress* progress);
    void TellEnding();
    [[nodiscard]] int EndStatus() const;
    int PrintListings();
    int WriteResults();
    int Save();
    int Tell();
    template <typename Value>
    [[nodiscard]] Value OfFocus(Value (AbEpoch::*value)() const) {
        const ReadGuard guard(document_.Portal());
        return (document_.Portal()->FocusEpoch()->*value)();
    }
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
    // Of the run: what goes into its checkpoints; steps, reports and seconds are those of the part
    // before this program.
    RunRecord run_;
    SystemState start_;  // of a run that began here
    bool isStartMeasured_ = false;
    std::chrono::steady_clock::time_point begin_;
    double seconds_ = 0.0;  // of real time that the run has taken
    RunTarget target_{.kind = RunTarget::Kind::kNone};
    BMessage touches_;  // the pairs that ended the run, if any did
    std::optional<RunEnding> ending_;
    bool isInterrupted_ = false;  // by a signal, before it was done
};
