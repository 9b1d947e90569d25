// The plane through a place in space that lies parallel to a display's view: what a hand that moves
// over the screen moves in. A plain value.
#pragma once

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

struct HandPlane {
    static constexpr int32 kAnyWay = -1;  // no axis

    // What lies to the right and upwards on the screen: unit vectors.
    ThreeVector right{1.0, 0.0, 0.0};
    ThreeVector up{0.0, 1.0, 0.0};
    double scale = 1.0;  // pixels per metre

    // How a way is seen, if a metre is so many pixels.
    [[nodiscard]] BPoint See(const ThreeVector& way, double pixels) const;
    // The way that is seen so. With an axis (0: x, 1: y, 2: z) the one along it that comes nearest;
    // none where one looks along it.
    [[nodiscard]] ThreeVector WayOf(BPoint seen, double pixels, int32 axis = kAnyWay) const;
};
