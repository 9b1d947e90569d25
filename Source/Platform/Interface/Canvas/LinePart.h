// The part of a line that lies within borders. A plain value.
#pragma once

#include <algorithm>

struct LinePart {
    double from = 0.0;  // of the way from the line's start
    double to = 1.0;

    // Keeps what lies on the inner side of one border: where step * t <= room. False if nothing
    // does.
    bool Cut(double step, double room) {
        if (step == 0.0) return room >= 0.0;
        const double at = room / step;
        if (step < 0.0)
            from = std::max(from, at);
        else
            to = std::min(to, at);
        return from <= to;
    }

    // The same with all borders of a frame, for the line from (x, y) that goes by (dx, dy): the
    // method of Liang and Barsky.
    template <typename Frame>
    bool CutAt(const Frame& frame, double x, double y, double dx, double dy) {
        return Cut(-dx, x - frame.left) && Cut(dx, frame.right - x) && Cut(-dy, y - frame.top) &&
               Cut(dy, frame.bottom - y);
    }
};
