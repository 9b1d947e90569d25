// Where on the screen a place in space is seen, and how large a body. A display implements it, and
// calls come from whoever holds the display's lock.
#pragma once

#include <cmath>

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/GraphicsDefs.h"

// A parallel projection as numbers, for what maps so many places that it cannot ask for each, or
// needs more digits than a point of the screen has. A plain value.
struct PlaneMap {
    ThreeVector center;  // m, seen at (0, 0)
    // Pixels that a metre along each axis is seen further right, and further down.
    ThreeVector right;
    ThreeVector down;

    struct Point {
        double x = 0.0;  // pixels
        double y = 0.0;
    };
    [[nodiscard]] Point Map(const ThreeVector& place) const { return MapWay(place - center); }
    // A displacement, or a velocity.
    [[nodiscard]] Point MapWay(const ThreeVector& way) const {
        return {right.x * way.x + right.y * way.y + right.z * way.z,
                down.x * way.x + down.y * way.y + down.z * way.z};
    }
};

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
