// Cuts lines at a frame. No state, any thread.
#pragma once

#include "Platform/Support/GraphicsDefs.h"

// Moves the ends of a line that lie outside the frame onto its border, along the line. False, and
// nothing is moved, for a line that does not meet the frame or has an end that is not finite.
[[nodiscard]] bool FixStartEnd(BPoint* start, BPoint* end, BRect frame);

[[nodiscard]] inline bool IsInside(BPoint point, BRect frame) {
    return point.x >= frame.left && point.x <= frame.right && point.y >= frame.top &&
           point.y <= frame.bottom;
}
