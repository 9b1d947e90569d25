// Follows a body's trail back in time, and finds where it has made so many turns. A plain value.
#pragma once

#include <vector>

#include "Simulation/History/Sample.h"

class TurnCounter {
public:
    // Of the direction of motion, in whole turns.
    explicit TurnCounter(double most) : most_(most) {}

    // These go before those that were counted until now. What lies further back than the turns
    // reach is cut off.
    void Cut(std::vector<Sample>* samples);
    [[nodiscard]] bool IsDone() const { return isDone_; }

private:
    const double most_;
    ThreeVector turned_;     // radians about each axis
    ThreeVector direction_;  // of the last velocity; zero: there was none
    bool isDone_ = false;
};
