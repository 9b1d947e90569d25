#include "Displays/Trajectories/LineClipping.h"

#include <cmath>

#include "Platform/Interface/Canvas/LinePart.h"

bool FixStartEnd(BPoint* start, BPoint* end, BRect frame) {
    if (IsInside(*start, frame) && IsInside(*end, frame)) return true;
    const double x = start->x;
    const double y = start->y;
    const double dx = end->x - x;
    const double dy = end->y - y;
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(dx) || !std::isfinite(dy))
        return false;
    LinePart part;
    if (!part.CutAt(frame, x, y, dx, dy)) return false;
    const auto at = [&](double t) {
        return BPoint{static_cast<float>(x + t * dx), static_cast<float>(y + t * dy)};
    };
    if (part.from > 0.0) *start = at(part.from);
    if (part.to < 1.0) *end = at(part.to);
    return true;
}
