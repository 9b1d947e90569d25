// The directions of a frame that turns about an axis with a pair of bodies: the second one stays
// across from the first. A plain value.
#pragma once

#include "Model/Systems/ThreeVector.h"

struct TurningAxes {
    ThreeVector across{1.0, 0.0, 0.0};  // from the first to the second, but for the part along
    ThreeVector up{0.0, 1.0, 0.0};
    ThreeVector along{0.0, 0.0, 1.0};  // the axis

    // `way`: from the first to the second. Some directions about the axis where they lie one above
    // the other.
    [[nodiscard]] static TurningAxes Of(const ThreeVector& way, const ThreeVector& axis);
    // A vector as the frame has it.
    [[nodiscard]] ThreeVector See(const ThreeVector& vector) const;
};
