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
    [[nodiscard]] rgb_color Text() const {
        return isLight ? rgb_color{40, 44, 54, 255} : rgb_color{205, 210, 220, 255};
    }

    bool operator==(const SpaceOptions&) const = default;
};
