// The colours that new bodies get: a fixed sequence of bright, well separated colours that stand
// out on the dark sky. No state, any thread.
#pragma once

#include <vector>

#include "Platform/Support/GraphicsDefs.h"

class BodyColors {
public:
    // The colour at a position (0 upward) of the endless sequence; hues advance by the golden
    // section, so that neighbours differ most.
    static rgb_color At(int64 index);
    // The first colour from `index` on that is clearly unlike all those in use; the colour at
    // `index` when a whole round finds none.
    static rgb_color Next(int32 index, const std::vector<rgb_color>& inUse);
    // How unlike two colours look: 0 for equal ones, about 765 for black and white.
    // Source: the "redmean" approximation of a perceptual distance.
    static double Distance(rgb_color a, rgb_color b);
};
