// How far a notch of the wheel and a key move what displays of all kinds show. Plain values.
#pragma once

#include <cmath>
#include <optional>

#include "Platform/Interface/Canvas/CanvasInput.h"

namespace PictureKeys {

// Of the scale, for one notch of the wheel or one press of a key.
inline constexpr double kZoomStep = 1.25;
inline constexpr float kPanStep = 40.0f;  // pixels, for one press of an arrow key

[[nodiscard]] inline double ZoomOf(const WheelInput& input) {
    return std::pow(kZoomStep, static_cast<double>(input.stepsY));
}

// None: it is another key.
[[nodiscard]] inline std::optional<double> ZoomOf(const KeyInput& input) {
    if (input.key == '+' || input.key == '=') return kZoomStep;
    if (input.key == '-') return 1.0 / kZoomStep;
    return std::nullopt;
}

// To look along: 1, 2, 3 for x, y, z; 0: it is another key.
[[nodiscard]] inline int32 AxisOf(const KeyInput& input) {
    const uint32 letter = input.key | 0x20u;  // small
    return letter >= 'x' && letter <= 'z' ? static_cast<int32>(letter - 'x') + 1 : 0;
}

// To look onto the orbit of the selected body.
[[nodiscard]] inline bool IsOrbit(const KeyInput& input) {
    return input.key == 'o' || input.key == 'O';
}

// Right and down: -1, 0 or 1. None: it is no arrow.
[[nodiscard]] inline std::optional<BPoint> ArrowOf(const KeyInput& input) {
    switch (input.key) {
        case B_LEFT_ARROW:
            return BPoint{-1.0f, 0.0f};
        case B_RIGHT_ARROW:
            return BPoint{1.0f, 0.0f};
        case B_UP_ARROW:
            return BPoint{0.0f, -1.0f};
        case B_DOWN_ARROW:
            return BPoint{0.0f, 1.0f};
        default:
            return std::nullopt;
    }
}

}  // namespace PictureKeys
