// The run of one open simulation: turns the window's messages into calls of run control, merges
// bodies that touch, and reports how a run has ended. Owned by the window and used on its thread
// with the window locked.
#pragma once

#include "Simulation/BodyExchange.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/TrustControl.h"

class BMessage;
class ProgramResources;
class SimulationControls;
class SimulationDocument;
struct RunEnding;
struct RunTarget;

class SimulationRun {
public:
    // None is owned.
    SimulationRun(SimulationDocument* document, SimulationControls* controls,
                  const ProgramResources* resources);
    ~SimulationRun();
    SimulationRun(const SimulationRun&) = delete;
    SimulationRun& operator=(const SimulationRun&) = delete;

    // False for a message about something else.
    bool Handle(const BMessage& message);
    [[nodiscard]] bool IsRunning() const { return control_.PauseCount() <= 0; }

    [[nodiscard]] RunControl* Control() { return &control_; }
    [[nodiscard]] SimulationController* Controller() { return &controller_; }
    [[nodiscard]] RunHistory* History() { return &history_; }

private:
    void RunTo(const RunTarget& target);
    void ForgetTarget();
    void RunBackwards();
    void Collide(const BMessage& pairs);
    // The run has ended by itself.
    void End(const RunEnding& ending);

    SimulationDocument* const document_;
    SimulationControls* const controls_;
    const ProgramResources* const resources_;
    RunHistory history_;
    RunControl control_;
    SimulationController controller_;
    BodyExchange exchange_;
    TrustControl trust_;
    bool isForMerger_ = false;  // the run, which is over then
};
