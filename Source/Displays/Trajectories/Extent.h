// The box around places. A plain value.
#pragma once

#include <algorithm>
#include <limits>

#include "Model/Systems/ThreeVector.h"

struct Extent {
    static constexpr double kNone = std::numeric_limits<double>::infinity();

    ThreeVector low{kNone, kNone, kNone};
    ThreeVector high{-kNone, -kNone, -kNone};

    [[nodiscard]] bool IsEmpty() const { return low.x > high.x; }
    // Places that are not finite do not count.
    void Add(const ThreeVector& place) {
        if (!IsFinite(place)) return;
        low = {std::min(low.x, place.x), std::min(low.y, place.y), std::min(low.z, place.z)};
        high = {std::max(high.x, place.x), std::max(high.y, place.y), std::max(high.z, place.z)};
    }
    void Add(const Extent& other) {
        if (other.IsEmpty()) return;
        Add(other.low);
        Add(other.high);
    }
};
