// What a small picture of a run shows of its trails. No state, any thread.
#pragma once

#include <vector>

#include "Displays/Trajectories/Extent.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Simulation/History/Sample.h"

struct PictureTrail {
    rgb_color color;
    double mass = 0.0;
    std::vector<Sample> samples;
};

// The places of all samples.
[[nodiscard]] Extent ExtentOf(const std::vector<PictureTrail>& trails);

// The trails as they are, if one of them is more than a point in a picture of all. Else those of
// what circles a body, as that one sees them: a planet's moons, while the planet hardly gets on.
// And if all are points beside each other, the longest one alone.
[[nodiscard]] std::vector<PictureTrail> TrailsToSee(std::vector<PictureTrail> trails);
