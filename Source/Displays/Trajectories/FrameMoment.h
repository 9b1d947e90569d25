// A frame of reference at one moment: what stands still in it, and how it is turned. A plain value.
#pragma once

#include <optional>

#include "Simulation/History/TurningAxes.h"

struct FrameMoment {
    ThreeVector origin;               // m
    std::optional<TurningAxes> axes;  // none: it does not turn

    // A place as the frame has it, m.
    [[nodiscard]] ThreeVector See(const ThreeVector& place) const {
        const ThreeVector way = place - origin;
        return axes ? axes->See(way) : way;
    }
};
