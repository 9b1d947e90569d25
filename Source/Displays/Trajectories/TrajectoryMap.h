// Where on the screen a place in space is seen, and how large a body. A display implements it, and
// calls come from whoever holds the display's lock.
#pragma once

#include <cmath>

#include "Platform/Support/GraphicsDefs.h"

// To the nearest whole pixel; halves go up.
[[nodiscard]] inline float round_to_unit(float value) {
    return std::floor(value + 0.5f);
}

class TrajectoryMap {
public:
    virtual ~TrajectoryMap() = default;

    // A position in metres to a point of the view.
    virtual BPoint Map(double x, double y, double z) = 0;
    // The radius in metres of a body to that of its disc in pixels.
    virtual float DiscSize(double radius) = 0;

protected:
    TrajectoryMap() = default;
    TrajectoryMap(const TrajectoryMap&) = default;
    TrajectoryMap& operator=(const TrajectoryMap&) = default;
};
