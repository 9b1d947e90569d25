// One use of the program: reads a document, runs it as the window's Go and Pause do, and writes
// what was asked for. Main thread; make it before any other thread, for it blocks the signals that
// stop it.
#pragma once

#include <optional>
#include <string>

#include "Run/CollisionWatch.h"
#include "Run/Options.h"
#include "Run/OutputFile.h"
#include "Run/Progress.h"
#include "Run/RunEvents.h"
#include "Run/RunPainter.h"
#include "Run/RunRecord.h"
#include "Run/RunRecorder.h"
#include "Run/RunSummary.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SystemState.h"

class AtomicFile;
class CsvWriter;

class Runner : private RunControlView {
public:
    static constexpr int kDone = 0;
    static constexpr int kCouldNot = 1;
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
    int FindRun(const BMessage& record);
    int LoadDocument();
    int EditDocument();
    int RunDocument();
    // The output that must not be written because it is the document or another output, if any.
    [[nodiscard]] std::optional<std::string> ClashingOutput() const;
    void RunStarting() override;
    void Resume();
    void BeginReports(const SystemState& state);
    void WaitForEnd();
    [[nodiscard]] std::optional<int> Patience(const Progress& progress) const;
    [[nodiscard]] bool HandleEvent(RunEvents::Event event, Progress* progress);
    [[nodiscard]] bool KeepCheckpoint(Progress* progress);
    void WriteCheckpoint();
    DocumentError StoreRun(BMessage* record);
    [[nodiscard]] double SinceCheckpoint() const;
    [[nodiscard]] double Seconds() const;
    const Conserved& StartConserved();
    [[nodiscard]] bool ResolveCollision(Progress* progress);
    void TellEnding();
    [[nodiscard]] int EndStatus() const;
    int ListEpochTree();
    int WriteResults();
    int Save();
    DocumentError WriteDocument(const std::string& path, BMessage&& record) const;
    int WritePicture();
    int Tell();
    int PrintText(const std::string& path, const std::string& text);
    int Fail(const std::string& file, const std::string& reason) const;
    int FailPicture(const AtomicFile& file) const;
    void Note(const std::string& text) const;
    static void Print(const std::string& text);
    [[nodiscard]] AbEpoch* Focus() { return document_.Portal()->FocusEpoch(); }
    [[nodiscard]] RunSummary Summarize();

    const Options& options_;
    const ProgramResources& resources_;
    RunEvents events_;  // before the threads of what follows
    CollisionWatch collisions_;
    SimulationDocument document_;
    RunControl control_;
    SimulationController controller_;
    RunRecorder recorder_;
    OutputFile csvFile_;
    std::unique_ptr<CsvWriter> csv_;
    std::unique_ptr<RunPainter> painter_;  // if a picture is asked for
    // Of the run: what goes into its checkpoints; steps, reports and seconds are those of the part
    // before this program.
    RunRecord run_;
    SystemState start_;  // of a run that began here
    bool isStartMeasured_ = false;
    std::chrono::steady_clock::time_point begin_;
    std::chrono::steady_clock::time_point lastCheckpoint_;
    double seconds_ = 0.0;  // of real time that the run has taken
    BMessage touches_;      // the pairs that ended the run, if any did
    std::optional<RunEnding> ending_;
};
