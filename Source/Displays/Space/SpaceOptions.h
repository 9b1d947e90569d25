// What a space display shows beside bodies and trails. A plain value.
#pragma once

#include "Platform/Support/GraphicsDefs.h"

struct SpaceOptions {
    bool names = true;
    bool scaleBar = true;
    bool time = true;
    bool ecliptic = true;
    bool axes = true;
    bool orbits = false;
    bool velocities = false;
    bool accelerations = false;
    bool isLight = false;  // the sky

    [[nodiscard]] rgb_color Sky() const {
        return isLight ? rgb_color{250, 250, 252, 255} : rgb_color{6, 7, 12, 255};
    }
    // A body's colour as it is seen before that sky: darker before a light one.
    [[nodiscard]] rgb_color Seen(rgb_color color) const {
        const auto channel = [](uint8 value) { return static_cast<uint8>(value * 3 / 5); };
        return isLight
                   ? rgb_color{channel(color.red), channel(color.green), channel(color.blue), 255}
                   : color;
    }
    [[nodiscard]] rgb_color Text() const {
        return isLight ? rgb_color{40, 44, 54, 255} : rgb_color{205, 210, 220, 255};
    }

    bool operator==(const SpaceOptions&) const = default;
};
