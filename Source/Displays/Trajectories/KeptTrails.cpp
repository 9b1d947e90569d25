#include "Displays/Trajectories/KeptTrails.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Displays/Trajectories/LineClipping.h"
#include "Displays/Trajectories/TrajectoryMap.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Platform/Kernel/OS.h"

namespace {

// Samples that are painted between two looks at the clock.
constexpr std::size_t kPiece = 64;
constexpr int32 kLinesPerArray = 128;
// Pixels by which a line may miss the curve, and the least length of one.
constexpr float kFlat = 0.3f;
constexpr float kShort = 1.0f;
constexpr int32 kMaxDepth = 12;
// Longer lines are not compared with what is painted.
constexpr float kLongestCompared = 24.0f;

BPoint Middle(BPoint a, BPoint b) {
    return {0.5f * (a.x + b.x), 0.5f * (a.y + b.y)};
}

float Bend(BPoint a, BPoint b, BPoint c) {
    return std::max(std::abs(a.x - 2.0f * b.x + c.x), std::abs(a.y - 2.0f * b.y + c.y));
}

float Distance(BPoint a, BPoint b) {
    return std::abs(a.x - b.x) + std::abs(a.y - b.y);
}

int32 Difference(rgb_color a, rgb_color b) {
    return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue);
}

}  // namespace

void KeptTrails::Begin(std::vector<Trail> trails, std::vector<BRect> frames) {
    trails_ = std::move(trails);
    frames_ = std::move(frames);
    std::erase_if(trails_, [](const Trail& trail) { return trail.samples.size() < 2; });
}

void KeptTrails::Paint(TrajectoryView* view, TrajectoryMap* map, bigtime_t time) {
    if (IsDone()) return;
    const bigtime_t end = system_time() + time;
    while (!IsDone() && system_time() < end) {
        for (Trail& trail : trails_)
            PaintPiece(&trail, view, map);
        std::erase_if(trails_, [](const Trail& trail) { return trail.samples.size() < 2; });
    }
    view->SVSync();
}

// From its newest end back; what is painted is dropped.
void KeptTrails::PaintPiece(Trail* trail, TrajectoryView* view, TrajectoryMap* map) {
    std::vector<Sample>& samples = trail->samples;
    const auto place = [map](const ThreeVector& r) { return map->Map(r.x, r.y, r.z); };
    color_ = trail->color;
    pen_ = place(samples.back().position);
    view->SVBeginLineArray(kLinesPerArray);
    for (std::size_t i = 0; i < kPiece && samples.size() > 1; i++) {
        const Sample newer = samples.back();
        samples.pop_back();
        const Sample& older = samples.back();
        if (!newer.isJoined) {
            pen_ = place(older.position);
            continue;
        }
        const double third = (newer.time - older.time) / 3.0;
        Flatten({{place(newer.position), place(newer.position - third * newer.velocity),
                  place(older.position + third * older.velocity), place(older.position)}},
                0, view);
    }
    LineTo(place(samples.back().position), view);
    view->SVEndLineArray();
}

// Halves the curve (de Casteljau) until its pieces are straight or out of sight.
void KeptTrails::Flatten(const Curve& curve, int32 depth, TrajectoryView* view) {
    const auto& [a, b, c, d] = curve.points;
    if (!IsSeen(curve)) {
        pen_ = d;
        return;
    }
    if (depth == kMaxDepth || std::max(Bend(a, b, c), Bend(b, c, d)) <= 2.0f * kFlat) {
        if (Distance(pen_, d) < kShort) return;
        if (IsPainted(d, *view))
            pen_ = d;
        else
            LineTo(d, view);
        return;
    }
    const BPoint ab = Middle(a, b), bc = Middle(b, c), cd = Middle(c, d);
    const BPoint abc = Middle(ab, bc), bcd = Middle(bc, cd);
    const BPoint middle = Middle(abc, bcd);
    Flatten({{a, ab, abc, middle}}, depth + 1, view);
    Flatten({{middle, bcd, cd, d}}, depth + 1, view);
}

bool KeptTrails::IsSeen(const Curve& curve) const {
    const auto& p = curve.points;
    const auto x = std::minmax({p[0].x, p[1].x, p[2].x, p[3].x});
    const auto y = std::minmax({p[0].y, p[1].y, p[2].y, p[3].y});
    return std::any_of(frames_.begin(), frames_.end(), [&](const BRect& frame) {
        return x.first <= frame.right && x.second >= frame.left && y.first <= frame.bottom &&
               y.second >= frame.top;
    });
}

// The body came by here later, too: a long run goes over the same pixels thousands of times.
bool KeptTrails::IsPainted(BPoint to, const TrajectoryView& view) const {
    return Distance(pen_, to) <= kLongestCompared && IsPaintedAt(Middle(pen_, to), view) &&
           IsPaintedAt(to, view);
}

bool KeptTrails::IsPaintedAt(BPoint at, const TrajectoryView& view) const {
    const rgb_color pixel = view.LowerLayer().PixelAt(at);
    return Difference(pixel, color_) < Difference(pixel, view.LowColor());
}

void KeptTrails::LineTo(BPoint to, TrajectoryView* view) {
    for (const BRect& frame : frames_) {
        BPoint start = pen_;
        BPoint end = to;
        if (FixStartEnd(&start, &end, frame)) view->SVAddLine(start, end, color_);
    }
    pen_ = to;
}
