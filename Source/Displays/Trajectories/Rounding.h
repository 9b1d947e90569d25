// Whole pixels. No state, any thread.
#pragma once

#include <cmath>

// To the nearest whole number; halves go up.
[[nodiscard]] inline float round_to_unit(float value) {
    return std::floor(value + 0.5f);
}
