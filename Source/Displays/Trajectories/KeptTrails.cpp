#include "Displays/Trajectories/KeptTrails.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Displays/Trajectories/PaintedTest.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Platform/Interface/Canvas/LineClip.h"
#include "Platform/Kernel/OS.h"

namespace {

// Samples that are painted between two looks at the clock.
constexpr std::size_t kPiece = 64;
constexpr int32 kLinesPerArray = 128;
// Pixels by which a line may miss the curve, and the least length of one.
constexpr double kFlat = 0.3;
constexpr double kShort = 1.0;
// Pixels between samples that are painted one by one; curves are told apart to about that.
constexpr double kNear = 2.0;
// Of one curve; more of them would mostly lie outside the picture.
constexpr double kMaxLines = 16.0;
constexpr int32 kMaxDepth = 48;
// No line is longer: it is compared with what is painted at its middle and its end.
constexpr double kLong = 24.0;
// Of the colour, where a trail is faintest, and how many shades there are from there on.
constexpr double kFaintest = 0.1;
constexpr double kShades = 32.0;
constexpr double kFaint = 0.4;  // of the colour, in the background

using Point = PlaneMap::Point;

Point Middle(Point a, Point b) {
    return {0.5 * (a.x + b.x), 0.5 * (a.y + b.y)};
}

double Bend(Point a, Point b, Point c) {
    return std::max(std::abs(a.x - 2.0 * b.x + c.x), std::abs(a.y - 2.0 * b.y + c.y));
}

double Distance(Point a, Point b) {
    return std::abs(a.x - b.x) + std::abs(a.y - b.y);
}

Point Ahead(Point from, Point velocity, double time) {
    return {from.x + time * velocity.x, from.y + time * velocity.y};
}

BPoint ToScreen(Point point) {
    return {static_cast<float>(point.x), static_cast<float>(point.y)};
}

rgb_color Mixed(rgb_color color, rgb_color into, double part) {
    const auto channel = [part](uint8 of, uint8 with) {
        return static_cast<uint8>(std::lround(with + part * (of - with)));
    };
    return {channel(color.red, into.red), channel(color.green, into.green),
            channel(color.blue, into.blue), 255};
}

double ShadeAt(const KeptTrails::Trail& trail, double time) {
    if (!(trail.fullAt > trail.faintAt)) return 1.0;
    const double way = (time - trail.faintAt) / (trail.fullAt - trail.faintAt);
    const double shade = std::round(std::clamp(way, 0.0, 1.0) * kShades) / kShades;
    return kFaintest + (1.0 - kFaintest) * shade;
}

// How many lines a curve takes: it misses the one between its ends by at most three quarters of its
// bend, and several by the square of their number less.
double CountLines(const Point* p) {
    const double bend = std::max(Bend(p[0], p[1], p[2]), Bend(p[1], p[2], p[3]));
    const double length = Distance(p[0], p[1]) + Distance(p[1], p[2]) + Distance(p[2], p[3]);
    return std::max(std::sqrt(0.75 * bend / kFlat), length / kLong);
}

}  // namespace

void KeptTrails::Begin(std::vector<Trail> trails, std::vector<BRect> frames, const PlaneMap& map) {
    trails_.clear();
    for (Trail& trail : trails) {
        if (trail.samples.size() < 2) continue;
        const RepeatedCurves painted(trail.samples.size());
        trails_.push_back({std::move(trail), painted});
    }
    frames_ = std::move(frames);
    map_ = map;
}

void KeptTrails::Paint(TrajectoryView* view, bigtime_t time) {
    if (IsDone()) return;
    const bigtime_t end = system_time() + time;
    PaintedTest isPainted(view->LowerLayer());
    while (!IsDone() && system_time() < end) {
        for (Unpainted& rest : trails_)
            PaintPiece(&rest, view, &isPainted);
        std::erase_if(trails_, [](const Unpainted& rest) { return rest.trail.samples.size() < 2; });
    }
    view->SVSync();
}

PlaneMap::Point KeptTrails::MiddleOf(const Curve& curve) {
    const auto& [a, b, c, d] = curve.points;
    return {0.125 * (a.x + 3.0 * (b.x + c.x) + d.x), 0.125 * (a.y + 3.0 * (b.y + c.y) + d.y)};
}

KeptTrails::Mapped KeptTrails::Map(const Sample& sample) const {
    return {map_.Map(sample.position), map_.MapWay(sample.velocity)};
}

void KeptTrails::SetShade(const Unpainted& rest, double time, const TrajectoryView& view,
                          PaintedTest* isPainted) {
    const double shade = ShadeAt(rest.trail, time) * (rest.trail.isFaint ? kFaint : 1.0);
    color_ = Mixed(rest.trail.color, view.LowColor(), shade);
    isPainted->SetColor(rest.trail.color, shade, rest.trail.isFaint);
}

// From its newest end back; what is painted is dropped. Where samples lie closer together than can
// be seen, as those of a path relative to many bodies do, several make one line.
void KeptTrails::PaintPiece(Unpainted* rest, TrajectoryView* view, PaintedTest* isPainted) {
    std::vector<Sample>& samples = rest->trail.samples;
    SetShade(*rest, samples.back().time, *view, isPainted);
    Sample newest = samples.back();
    Mapped newer = Map(newest);
    pen_ = newer.place;
    view->SVBeginLineArray(kLinesPerArray);
    for (std::size_t i = 0; i < kPiece && samples.size() > 1; i++) {
        if (rest->trail.fullAt > rest->trail.faintAt)
            SetShade(*rest, newest.time, *view, isPainted);
        const bool isJoined = samples.back().isJoined;
        samples.pop_back();
        const Mapped older = Map(samples.back());
        if (!isJoined) {
            pen_ = older.place;
        } else if (Distance(newer.place, older.place) < kNear) {
            if (Distance(pen_, older.place) >= kNear) Step(older.place, view, *isPainted);
        } else {
            const double third = (newest.time - samples.back().time) / 3.0;
            const Curve curve{{newer.place, Ahead(newer.place, newer.velocity, -third),
                               Ahead(older.place, older.velocity, third), older.place}};
            if (IsSeen(curve) && !rest->painted.Knows(newer.place, MiddleOf(curve), older.place))
                Flatten(curve, 0, view, *isPainted);
            else
                pen_ = older.place;
        }
        newer = older;
        newest = samples.back();
    }
    LineTo(newer.place, view);
    view->SVEndLineArray();
}

// Halves the curve (de Casteljau) until its pieces are out of sight or a few lines each.
void KeptTrails::Flatten(const Curve& curve, int32 depth, TrajectoryView* view,
                         const PaintedTest& isPainted) {
    const auto& [a, b, c, d] = curve.points;
    if (!IsSeen(curve)) {
        pen_ = d;
        return;
    }
    const double lines = std::ceil(CountLines(curve.points));
    if (depth == kMaxDepth || lines <= kMaxLines)
        return Follow(curve, static_cast<int32>(std::clamp(lines, 1.0, kMaxLines)), view,
                      isPainted);
    const Point ab = Middle(a, b), bc = Middle(b, c), cd = Middle(c, d);
    const Point abc = Middle(ab, bc), bcd = Middle(bc, cd);
    const Point middle = Middle(abc, bcd);
    Flatten({{a, ab, abc, middle}}, depth + 1, view, isPainted);
    Flatten({{middle, bcd, cd, d}}, depth + 1, view, isPainted);
}

// In equal steps of the parameter. The body came by here later, too: a long run goes over the same
// pixels thousands of times, and paints them once.
void KeptTrails::Follow(const Curve& curve, int32 lines, TrajectoryView* view,
                        const PaintedTest& isPainted) {
    const auto& [a, b, c, d] = curve.points;
    // a + s v + s^2 w + s^3 u
    const Point v{3.0 * (b.x - a.x), 3.0 * (b.y - a.y)};
    const Point w{3.0 * (a.x - 2.0 * b.x + c.x), 3.0 * (a.y - 2.0 * b.y + c.y)};
    const Point u{d.x - a.x - v.x - w.x, d.y - a.y - v.y - w.y};
    const double step = 1.0 / lines;
    for (int32 i = 1; i <= lines; i++) {
        const double s = i * step;
        const Point to = i == lines ? d
                                    : Point{a.x + s * (v.x + s * (w.x + s * u.x)),
                                            a.y + s * (v.y + s * (w.y + s * u.y))};
        if (Distance(pen_, to) < kShort) continue;
        Step(to, view, isPainted);
    }
}

void KeptTrails::Step(Point to, TrajectoryView* view, const PaintedTest& isPainted) {
    if (isPainted(to.x, to.y) && isPainted(0.5 * (pen_.x + to.x), 0.5 * (pen_.y + to.y)))
        pen_ = to;
    else
        LineTo(to, view);
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

void KeptTrails::LineTo(Point to, TrajectoryView* view) {
    for (const BRect& frame : frames_) {
        BPoint start = ToScreen(pen_);
        BPoint end = ToScreen(to);
        if (FixStartEnd(&start, &end, frame)) view->SVAddLine(start, end, color_);
    }
    pen_ = to;
}
