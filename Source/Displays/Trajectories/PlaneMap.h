// A parallel projection as numbers, for what maps so many places that it cannot ask for each, or
// needs more digits than a point of the screen has. A plain value.
#pragma once

#include "Model/Systems/ThreeVector.h"

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
