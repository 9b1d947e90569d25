#include "Displays/Trajectories/LineClipping.h"

#include <cmath>

namespace {

// The part of the line, from 0 at its start to 1 at its end, that is left.
struct Part {
    double from = 0.0;
    double to = 1.0;

    // Keeps what lies on the inner side of one border: where step * t <= room.
    bool Cut(double step, double room) {
        if (step == 0.0) return room >= 0.0;
        const double at = room / step;
        if (step < 0.0)
            from = std::max(from, at);
        else
            to = std::min(to, at);
        return from <= to;
    }
};

}  // namespace

bool FixStartEnd(BPoint* start, BPoint* end, BRect frame) {
    if (IsInside(*start, frame) && IsInside(*end, frame)) return true;
    const double x = start->x;
    const double y = start->y;
    const double dx = end->x - x;
    const double dy = end->y - y;
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(dx) || !std::isfinite(dy))
        return false;
    Part part;
    if (!part.Cut(-dx, x - frame.left) || !part.Cut(dx, frame.right - x) ||
        !part.Cut(-dy, y - frame.top) || !part.Cut(dy, frame.bottom - y))
        return false;
    const auto at = [&](double t) {
        return BPoint{static_cast<float>(x + t * dx), static_cast<float>(y + t * dy)};
    };
    if (part.from > 0.0) *start = at(part.from);
    if (part.to < 1.0) *end = at(part.to);
    return true;
}
