// Lines that follow one another and that one straight line can stand for, since the points where
// they meet lie on it to within a tolerance. So the many short pieces of a trail are drawn as few
// longer lines. A plain value.
//
// The lines go on in one direction of the axis that the first one is nearer to, u. Seen from the
// start, the points so far leave open a range of slopes, in which the next one must lie.
#pragma once

#include <algorithm>
#include <cmath>

#include "Platform/Support/GraphicsDefs.h"

class StraightRun {
public:
    StraightRun(BPoint from, BPoint to, float tolerance)
        : start_(from),
          tolerance_(tolerance),
          isSteep_(std::abs(to.y - from.y) > std::abs(to.x - from.x)),
          view_(ViewOf(to)) {}

    // Takes a line in that goes on to this point, or says that it does not fit. Nothing fits to a
    // first line without a length.
    [[nodiscard]] bool Take(BPoint to) {
        const View view = ViewOf(to);
        // Written so that neither what is not finite nor what follows it fits.
        if (!((view.u - view_.u) * view_.u >= 0.0f && std::abs(view.u) <= kMaxLength &&
              view.slope >= view_.least && view.slope <= view_.most))
            return false;
        view_ = {view.u, view.slope, std::max(view.least, view_.least),
                 std::min(view.most, view_.most)};
        return true;
    }

private:
    // Of a point, from the start.
    struct View {
        float u;
        float slope;
        // Of lines that pass the point.
        float least;
        float most;
    };

    // Far from the limits of numbers.
    static constexpr float kMaxLength = 1024.0f;

    [[nodiscard]] View ViewOf(BPoint point) const {
        const float x = point.x - start_.x;
        const float y = point.y - start_.y;
        const float u = isSteep_ ? y : x;
        const float scale = 1.0f / u;
        const float slope = scale * (isSteep_ ? x : y);
        const float margin = tolerance_ * std::abs(scale);
        return {u, slope, slope - margin, slope + margin};
    }

    const BPoint start_;
    const float tolerance_;
    const bool isSteep_;
    View view_;
};
