// The closing of all simulations when the program is to quit: each is asked when the one before has
// closed, so that no more than one question is on the screen; a question that is cancelled ends the
// round, and the simulations not yet asked stay as they are. Those that were opened meanwhile are
// asked at its end. Owned by the application, on its thread.
#pragma once

#include <deque>
#include <vector>

class BMessage;
class Simulation;

class QuitRound {
public:
    // Asks the first of them, or asks again whom it is waiting for.
    void Begin(const std::vector<Simulation*>& simulations);
    // The simulation is gone: asks the next one. `open`: those that there still are.
    void Closed(const Simulation* simulation, const std::vector<Simulation*>& open);
    // It stays open after all.
    void Cancelled(const Simulation* simulation);
    [[nodiscard]] bool IsUnderWay() const { return isUnderWay_; }

private:
    void AskFirst();

    bool isUnderWay_ = false;       // also when the last one has closed
    std::deque<Simulation*> left_;  // the first one has been asked
};
