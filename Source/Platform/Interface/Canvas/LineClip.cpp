#include "Platform/Interface/Canvas/LineClip.h"

#include <cmath>

bool FixStartEnd(BPoint* start, BPoint* end, BRect frame) {
    if (IsInside(*start, frame) && IsInside(*end, frame)) return true;
    double x0 = start->x;
    double y0 = start->y;
    double x1 = end->x;
    double y1 = end->y;
    if (!std::isfinite(x0) || !std::isfinite(y0) || !std::isfinite(x1 - x0) ||
        !std::isfinite(y1 - y0) || !ClipLine(frame, &x0, &y0, &x1, &y1))
        return false;
    *start = {static_cast<float>(x0), static_cast<float>(y0)};
    *end = {static_cast<float>(x1), static_cast<float>(y1)};
    return true;
}
