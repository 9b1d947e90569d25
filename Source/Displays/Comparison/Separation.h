// How far the bodies of two runs are apart at one time. Plain values; any thread.
#pragma once

#include <optional>
#include <vector>

#include "Model/Systems/ThreeVector.h"
#include "Simulation/Document/SystemState.h"

// Where bodies are at one time.
struct BodyPlaces {
    double time = 0.0;  // s
    std::vector<int64> ids;
    std::vector<ThreeVector> places;  // m
};

struct Separation {
    double distance = 0.0;  // m
    int64 body = 0;         // that it is the distance of
};

// The largest one, of the bodies that both have. The state is carried to the time of the places
// first, to the last digits that a double has: reports of two runs do not lie at the same times.
// Nothing: no body is in both, or that would take more than so many evaluations of a pair.
[[nodiscard]] std::optional<Separation> LargestSeparation(SystemState state,
                                                          const BodyPlaces& places,
                                                          double mostPairs);
