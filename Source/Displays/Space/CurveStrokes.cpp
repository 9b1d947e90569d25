#include "Displays/Space/CurveStrokes.h"

#include <algorithm>
#include <cmath>

#include "Platform/Interface/Canvas/LineClip.h"

namespace {

constexpr double kReach = 64.0;  // pixels around the picture: no line is so wide
constexpr double kMaxLines = 24.0;
constexpr int32 kMaxDepth = 48;
// Of the strength, at a trail's oldest end.
constexpr double kOldest = 0.25;

using Point = SpaceMap::Point;

struct Frame {
    double left;
    double top;
    double right;
    double bottom;
};

ThreeVector Middle(const ThreeVector& a, const ThreeVector& b) {
    return 0.5 * (a + b);
}

double Bend(Point a, Point b, Point c) {
    return std::max(std::abs(a.x - 2.0 * b.x + c.x), std::abs(a.y - 2.0 * b.y + c.y));
}

}  // namespace

StrokeShades::StrokeShades(rgb_color color, rgb_color sky) {
    for (int32 i = 0; i <= kShades; i++) {
        const auto channel = [i](uint8 of, uint8 with) {
            return static_cast<uint8>((of * i + with * (kShades - i)) / kShades);
        };
        shades_[static_cast<std::size_t>(i)] =
            ToPixel({channel(color.red, sky.red), channel(color.green, sky.green),
                     channel(color.blue, sky.blue), 255});
    }
}

CurveStrokes::CurveStrokes(const SpaceMap& map, Detail detail, std::vector<Stroke>* into)
    : map_(map), detail_(detail), into_(*into), right_(map.Width()), bottom_(map.Height()) {}

// --- Curves ---

void CurveStrokes::AddTrail(const KeptTrails::Trail& trail, bool isWhole) {
    if (trail.samples.size() < 2) return;
    stride_ = isWhole ? detail_.stride : 1;
    const bool fades = trail.fullAt != trail.faintAt;
    AddCurve(trail.samples, fades ? trail.faintAt : trail.samples.front().time,
             fades ? trail.fullAt : trail.samples.back().time);
    stride_ = 1;
}

// Between two samples the path is a cubic; and so it is for the camera, whose coordinates are
// linear.
void CurveStrokes::AddCurve(const std::vector<Sample>& samples, double faintAt, double fullAt) {
    if (samples.empty()) return;
    ThreeVector place = map_.See(samples[0].position);
    MoveTo(place);
    for (std::size_t last = 0, i; last + 1 < samples.size(); last = i) {
        i = std::min(last + stride_, samples.size() - 1);
        const Sample& before = samples[last];
        const Sample& sample = samples[i];
        const ThreeVector next = map_.See(sample.position);
        if (sample.isJoined) {
            if (faintAt != fullAt) {
                const double part = (sample.time - faintAt) / (fullAt - faintAt);
                age_ = kOldest + (1.0 - kOldest) * std::clamp(part, 0.0, 1.0);
            }
            const double third = (sample.time - before.time) / 3.0;
            if (IsShort(before, third, place) && IsShort(sample, third, next)) {
                LineTo(next, false);
            } else {
                const ThreeVector way = third * map_.SeeWay(before.velocity);
                const ThreeVector nextWay = third * map_.SeeWay(sample.velocity);
                Flatten({{place, place + way, next - nextWay, next}}, 0);
            }
            if (i + 1 == samples.size() || !samples[i + 1].isJoined) LineTo(next, true);
        } else {
            MoveTo(next);
        }
        place = next;
    }
    age_ = 1.0;
}

// What goes so short a way cannot bend much.
bool CurveStrokes::IsShort(const Sample& sample, double time, const ThreeVector& seen) const {
    if (!map_.IsBeforeEye(seen)) return false;
    const ThreeVector& v = sample.velocity;
    const double speed = std::abs(v.x) + std::abs(v.y) + std::abs(v.z);
    return map_.ScaleAt(seen) * std::abs(time) * speed < detail_.shortest;
}

void CurveStrokes::AddLine(const ThreeVector& from, const ThreeVector& to) {
    MoveTo(map_.See(from));
    LineTo(map_.See(to), true);
}

bool CurveStrokes::IsOutside(const Point* points, int32 count) const {
    double left = points[0].x, right = left, top = points[0].y, bottom = top;
    for (int32 i = 1; i < count; i++) {
        left = std::min(left, points[i].x);
        right = std::max(right, points[i].x);
        top = std::min(top, points[i].y);
        bottom = std::max(bottom, points[i].y);
    }
    return !(right >= -kReach && left <= right_ + kReach && bottom >= -kReach &&
             top <= bottom_ + kReach);
}

// Halves the curve (de Casteljau) until its pieces are out of sight or a few lines each. What is
// partly behind the eye cannot be told from its projection.
void CurveStrokes::Flatten(const Curve& curve, int32 depth) {
    Point points[4];
    int32 before = 0;
    for (int32 i = 0; i < 4; i++) {
        if (!map_.IsBeforeEye(curve.points[i])) continue;
        before++;
        points[i] = map_.Project(curve.points[i]);
    }
    if (before == 0 || (before == 4 && IsOutside(points, 4))) return MoveTo(curve.points[3]);
    double lines = 1.0;
    if (before == 4) {
        const double bend =
            std::max(Bend(points[0], points[1], points[2]), Bend(points[1], points[2], points[3]));
        lines = std::ceil(std::sqrt(0.75 * bend / detail_.flat));
        // Not of what is not finite either.
        if (!(lines > 1.0)) lines = 1.0;
        if (lines <= kMaxLines) return Follow(curve, static_cast<int32>(lines));
    }
    // Of a curve through the eye's plane pieces are drawn that lie before it.
    const int32 most = before == 4 ? kMaxDepth : 8;
    if (depth >= most) return Follow(curve, before == 4 ? static_cast<int32>(kMaxLines) : 1);
    const auto& [a, b, c, d] = curve.points;
    const ThreeVector ab = Middle(a, b), bc = Middle(b, c), cd = Middle(c, d);
    const ThreeVector abc = Middle(ab, bc), bcd = Middle(bc, cd);
    const ThreeVector middle = Middle(abc, bcd);
    Flatten({{a, ab, abc, middle}}, depth + 1);
    Flatten({{middle, bcd, cd, d}}, depth + 1);
}

// In equal steps of the parameter.
void CurveStrokes::Follow(const Curve& curve, int32 lines) {
    const auto& [a, b, c, d] = curve.points;
    if (lines > 1) {
        // a + s v + s^2 w + s^3 u
        const ThreeVector v = 3.0 * (b - a);
        const ThreeVector w = 3.0 * (a - 2.0 * b + c);
        const ThreeVector u = d - a - v - w;
        const double step = 1.0 / lines;
        for (int32 i = 1; i < lines; i++) {
            const double s = i * step;
            LineTo(a + s * (v + s * (w + s * u)), false);
        }
    }
    LineTo(d, false);
}

// --- Lines ---

void CurveStrokes::MoveTo(const ThreeVector& seen) {
    pen_ = seen;
    isPenSeen_ = map_.IsBeforeEye(seen);
    if (isPenSeen_) penPoint_ = map_.Project(seen);
}

void CurveStrokes::LineTo(const ThreeVector& seen, bool isLast) {
    const bool isSeen = map_.IsBeforeEye(seen);
    if (isSeen && isPenSeen_) {
        const Point to = map_.Project(seen);
        const double length = std::abs(to.x - penPoint_.x) + std::abs(to.y - penPoint_.y);
        if (length == 0.0 || (!isLast && length < detail_.shortest)) return;
        Draw(seen, to);
        pen_ = seen;
        penPoint_ = to;
        return;
    }
    if (isSeen == isPenSeen_) return MoveTo(seen);
    // As far as it lies before the eye.
    const double part = (map_.Nearest() - pen_.z) / (seen.z - pen_.z);
    ThreeVector edge = pen_ + part * (seen - pen_);
    edge.z = map_.Nearest();
    if (isPenSeen_) {
        Draw(edge, map_.Project(edge));
        return MoveTo(seen);
    }
    MoveTo(edge);
    const Point to = map_.Project(seen);
    Draw(seen, to);
    MoveTo(seen);
}

void CurveStrokes::Draw(const ThreeVector& seen, Point to) {
    // Decided at the middle, since a line's ends may be at very different depths.
    const double nearness = map_.Nearness(Middle(pen_, seen));
    const int32 layer = layer_ >= 0 ? layer_ : SpaceLayer::Of(nearness);
    AddFlat(penPoint_, to, shades_->At(strength_ * age_ * StrokeShades::Nearer(nearness)), layer);
}

void CurveStrokes::AddFlat(Point from, Point to, Pixel color, int32 layer) {
    const Frame frame{-kReach, -kReach, right_ + kReach, bottom_ + kReach};
    const auto isInside = [&](Point p) {
        return p.x >= frame.left && p.x <= frame.right && p.y >= frame.top && p.y <= frame.bottom;
    };
    if (!isInside(from) || !isInside(to)) {
        if (!std::isfinite(from.x + from.y + to.x + to.y) ||
            !ClipLine(frame, &from.x, &from.y, &to.x, &to.y))
            return;
    }
    into_.push_back({static_cast<float>(from.x), static_cast<float>(from.y),
                     static_cast<float>(to.x), static_cast<float>(to.y), color, layer});
}
