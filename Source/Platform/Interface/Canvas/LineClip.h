// Cuts lines at a frame (Liang and Barsky's method). No state, any thread.
#pragma once

#include <algorithm>

#include "Platform/Support/GraphicsDefs.h"

// Moves the ends that lie outside the frame, whose sides may be whole numbers, onto its border.
// False, and nothing is moved, for a line that does not meet it. The ends must be finite.
template <typename Frame>
[[nodiscard]] bool ClipLine(const Frame& frame, double* x0, double* y0, double* x1, double* y1) {
    const double dx = *x1 - *x0;
    const double dy = *y1 - *y0;
    // The part of the line, from 0 at its start to 1 at its end, that is left.
    double begin = 0.0;
    double end = 1.0;
    // Keeps what lies on the inner side of one border: where step * t <= room.
    const auto clip = [&](double step, double room) {
        if (step == 0.0) return room >= 0.0;
        const double at = room / step;
        if (step < 0.0)
            begin = std::max(begin, at);
        else
            end = std::min(end, at);
        return begin <= end;
    };
    if (!clip(-dx, *x0 - frame.left) || !clip(dx, frame.right - *x0) ||
        !clip(-dy, *y0 - frame.top) || !clip(dy, frame.bottom - *y0))
        return false;
    const double startX = *x0;
    const double startY = *y0;
    if (end < 1.0) {
        *x1 = startX + end * dx;
        *y1 = startY + end * dy;
    }
    if (begin > 0.0) {
        *x0 = startX + begin * dx;
        *y0 = startY + begin * dy;
    }
    return true;
}

// The same for points of the screen, whose ends need not be finite: such a line meets nothing.
[[nodiscard]] bool FixStartEnd(BPoint* start, BPoint* end, BRect frame);

[[nodiscard]] inline bool IsInside(BPoint point, BRect frame) {
    return point.x >= frame.left && point.x <= frame.right && point.y >= frame.top &&
           point.y <= frame.bottom;
}
