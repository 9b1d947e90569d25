// The whole state of a calculation between two steps: a calculator that is given it makes the same
// reports from there on, to the bit. A plain value.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Simulation/Document/SystemState.h"

class AbEpoch;
class Body;
class EpochPortal;
class Calculator;

struct RunCheckpoint {
    int64 report = 0;  // the last one before, counted from the start of the run
    SystemState state;
    std::vector<double> radii;  // m, in the order of the state
    int32 order = 0;
    double cutoff = 0.0;
    int32 onContact = 0;
    bool isBackwards = false;
    BMessage calculator;
    // The calculator begins anew here, with a first step. Else it goes on.
    bool isStart = false;
    // No calculation leads here from the checkpoint before: the run begins here, or somebody has
    // edited it.
    bool isPinned = false;

    // Time and settings, for a run that goes on from here.
    void PutSettings(AbEpoch* epoch) const;
    // Name, mass, radius, place and velocity of a body of the state, by index.
    void PutBody(std::size_t index, Body* body) const;

    // About so many bytes of memory.
    [[nodiscard]] std::size_t Bytes() const;
};

// On the calculation thread, between two batches; takes the model lock. None: somebody has changed
// the model, so that this run cannot be taken up here.
[[nodiscard]] std::optional<RunCheckpoint> TakeCheckpoint(EpochPortal* portal,
                                                          const Calculator& calculator);
