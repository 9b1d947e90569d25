// The x-y plane as a disc ruled with rings of round radii and spokes: curves in space. Plain
// values.
#pragma once

#include <vector>

#include "Displays/Space/SpaceScene.h"

struct Camera;

struct EclipticGrid {
    ThreeVector center;
    double step = 0.0;  // m, from ring to ring: round in the unit
    double unit = 1.0;  // m
    int32 rings = 0;    // none: there is nothing to measure

    // As large as the system, or as what the camera shows if that is less.
    EclipticGrid(const SpaceScene& scene, const Camera& camera);

    [[nodiscard]] std::vector<Sample> Ring(int32 ring) const;
    // From the centre to the outermost ring.
    static constexpr int32 kSpokes = 12;
    [[nodiscard]] ThreeVector SpokeEnd(int32 spoke) const;
    // Where the radius of a ring is written.
    [[nodiscard]] ThreeVector MarkOf(int32 ring) const;
};
