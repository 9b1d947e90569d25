// A run while it goes on: waits for its end, shows how far it has come, keeps checkpoints, and has
// bodies that touch merge. Owned by the runner, and used on its thread.
#pragma once

#include <chrono>
#include <optional>

#include "Calculation/RunEnding.h"
#include "Platform/Application/BMessage.h"
#include "Run/RunEvents.h"
#include "Run/RunRecord.h"
#include "Simulation/Document/RunTarget.h"
#include "Simulation/Document/SystemState.h"

class Checkpoints;
class CollisionWatch;
class MotionFiles;
class Progress;
class ProgramResources;
class ReportFile;
class RunControl;
class RunFilm;
class RunnerOutput;
class RunRecorder;
class SimulationController;
class SimulationDocument;
struct Options;

class LiveRun {
public:
    // What the runner has, and the run goes on with.
    struct Parts {
        const Options& options;
        const ProgramResources& resources;
        const RunnerOutput& output;
        RunEvents& events;
        CollisionWatch& collisions;
        SimulationDocument& document;
        RunControl& control;
        SimulationController& controller;
        RunRecorder& recorder;
        ReportFile& reports;
        MotionFiles& motion;
        Checkpoints& checkpoints;
        RunFilm& film;
    };
    explicit LiveRun(const Parts& parts) : parts_(parts) {}

    // What goes into its checkpoints; steps, reports and seconds are those of the part before this
    // program.
    [[nodiscard]] RunRecord& Record() { return run_; }
    void SetTarget(const RunTarget& target) { target_ = target; }
    [[nodiscard]] const RunTarget& Target() const { return target_; }

    // It begins with that state, or goes on with what its record has; then its reports come.
    const SystemState& Begin(SystemState start);
    void GoOn() { isStartMeasured_ = true; }
    void StartClock() { begin_ = std::chrono::steady_clock::now(); }
    // Afterwards the calculator is parked, and what follows is known.
    void WaitForEnd();

    // Measured when it is needed, since that goes over all pairs.
    [[nodiscard]] const Conserved& StartConserved();
    // Of real time, with the part before.
    [[nodiscard]] double Seconds() const { return seconds_; }
    // The pairs that ended the run, if any did.
    [[nodiscard]] const BMessage& Touches() const { return touches_; }
    [[nodiscard]] const std::optional<RunEnding>& Ending() const { return ending_; }
    // By a signal, before it was done.
    [[nodiscard]] bool IsInterrupted() const { return isInterrupted_; }

private:
    [[nodiscard]] std::optional<int> Patience(const Progress& progress) const;
    [[nodiscard]] bool HandleEvent(RunEvents::Event event, Progress* progress);
    [[nodiscard]] bool KeepCheckpoint(Progress* progress);
    void Interrupt(Progress* progress);
    [[nodiscard]] bool Hold(Progress* progress);
    void WriteCheckpoint();
    [[nodiscard]] bool ResolveCollision(Progress* progress);
    [[nodiscard]] double SecondsUntilNow() const;
    [[nodiscard]] double TimeUval() const;

    const Parts parts_;
    RunRecord run_;
    RunTarget target_{.kind = RunTarget::Kind::kNone};
    SystemState start_;  // of a run that began here
    bool isStartMeasured_ = false;
    std::chrono::steady_clock::time_point begin_;
    double seconds_ = 0.0;
    BMessage touches_;
    std::optional<RunEnding> ending_;
    bool isInterrupted_ = false;
};
