// The orbits on which bodies would go on if each were alone with the one that it goes about: curves
// in space. Plain values.
#pragma once

#include <vector>

#include "Displays/Space/SpaceScene.h"

struct OrbitCurve {
    int32 body;
    std::vector<Sample> dashes;
    ThreeVector periapsis;
    bool hasPeriapsis;  // a circle has none
};

// Of bound ones, of so many of the heaviest bodies.
inline constexpr std::size_t kMaxOrbits = 200;
[[nodiscard]] std::vector<OrbitCurve> OrbitCurves(const std::vector<SpaceBody>& bodies);
// m/s2: what the others' gravity does to each.
[[nodiscard]] std::vector<ThreeVector> Accelerations(const std::vector<SpaceBody>& bodies);
