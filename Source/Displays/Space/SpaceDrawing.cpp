#include "Displays/Space/SpaceDrawing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Displays/Projection/Projection.h"
#include "Displays/Space/EclipticGrid.h"
#include "Displays/Space/OrbitCurves.h"
#include "Displays/Space/WorkInParts.h"

namespace {

// Logical pixels.
constexpr double kMinRadius = 1.5;
constexpr double kMaxRadius = 8192.0;
constexpr double kVelocityLength = 60.0;  // of the longest arrow
constexpr double kAccelerationLength = 40.0;
constexpr double kHead = 6.0;
constexpr double kAxisLength = 26.0;
constexpr double kAxesInset = 52.0;
constexpr double kRingGap = 4.0;
constexpr double kPeriapsisMark = 3.0;

constexpr double kGridStrength = 0.4;
constexpr double kOrbitStrength = 0.8;
constexpr rgb_color kGridColor{110, 130, 170, 255};
constexpr rgb_color kAxisColors[] = {{235, 90, 90, 255}, {90, 200, 100, 255}, {110, 140, 255, 255}};

// Trails that one thread takes at a time, at the least samples.
constexpr std::size_t kMinSamples = 4096;

// Of fewer all is drawn as it is, even while the camera moves.
constexpr std::size_t kManySamples = 50'000;

constexpr CurveStrokes::Detail kFine{0.25, 1.0};
constexpr CurveStrokes::Detail kCoarse{1.0, 10.0};

// While the camera moves so many samples are drawn, but no fewer than one of kMaxStride.
constexpr std::size_t kSeenMoving = 62'500;
constexpr std::size_t kMaxStride = 16;

using Point = SpaceMap::Point;

std::size_t CountSamples(const SpaceScene& scene) {
    std::size_t samples = 0;
    for (const KeptTrails::Trail& trail : scene.trails)
        samples += trail.samples.size();
    return samples;
}

ThreeVector UnitOf(const ThreeVector& v) {
    const double length = Length(v);
    return length > 0.0 && std::isfinite(length) ? (1.0 / length) * v : ThreeVector{0.0, 0.0, 1.0};
}

}  // namespace

SpaceDrawing::SpaceDrawing(const SpaceScene& scene, const Camera& camera,
                           const SpaceOptions& options, const SpaceMap& map, double scale)
    : scene_(scene),
      camera_(camera),
      options_(options),
      map_(map),
      scale_(scale),
      stride_(std::clamp<std::size_t>(CountSamples(scene) / kSeenMoving, 1, kMaxStride)) {}

void SpaceDrawing::Find(bool isCoarse, WorkerTeam* team) {
    FindBalls();
    if (options_.ecliptic) FindEcliptic();
    FindTrails(isCoarse && HasManySamples(scene_), team);
    if (options_.orbits) FindOrbits();
    if (options_.accelerations) FindArrows(Accelerations(scene_.bodies), kAccelerationLength, 0.6);
    if (options_.velocities) {
        std::vector<ThreeVector> velocities;
        for (const SpaceBody& body : scene_.bodies)
            velocities.push_back(body.velocity);
        FindArrows(velocities, kVelocityLength, 1.0);
    }
    FindRing();
    if (options_.axes) FindAxes();
}

CurveStrokes SpaceDrawing::MakeStrokes(std::vector<Stroke>* into, bool isCoarse) const {
    const CurveStrokes::Detail detail = isCoarse ? kCoarse : kFine;
    return {map_, {scale_ * detail.flat, scale_ * detail.shortest, isCoarse ? stride_ : 1}, into};
}

bool SpaceDrawing::IsInPicture(Point point) const {
    return point.x >= 0.0 && point.x <= map_.Width() && point.y >= 0.0 && point.y <= map_.Height();
}

// --- Bodies ---

void SpaceDrawing::FindBalls() {
    const int32 source = scene_.LightSource();
    for (std::size_t i = 0; i < scene_.bodies.size(); i++) {
        const SpaceBody& body = scene_.bodies[i];
        const ThreeVector seen = map_.See(body.position);
        if (!body.isShown || !IsFinite(seen) || !map_.IsBeforeEye(seen)) continue;
        const Point center = map_.Project(seen);
        if (!std::isfinite(center.x + center.y)) continue;
        const double least = std::max(kMinRadius, diameter_log(body.radius) / 2 + 1.0);
        const double radius = std::min(std::max(map_.ScaleAt(seen) * body.radius, scale_ * least),
                                       scale_ * kMaxRadius);
        const double reach = radius + scale_ * kMaxRadius;
        if (center.x < -reach || center.x > map_.Width() + reach || center.y < -reach ||
            center.y > map_.Height() + reach)
            continue;
        discs_.push_back({static_cast<int32>(i), center, radius});
        const bool isLight = body.IsStar() || static_cast<int32>(i) == source;
        const ThreeVector light = UnitOf(
            map_.SeeWay(scene_.bodies[static_cast<std::size_t>(source)].position - body.position));
        items_.balls.push_back(
            {center.x, center.y, radius, body.color, isLight, light, map_.Nearness(seen)});
    }
    // Of those at the same place the heaviest is seen.
    std::reverse(items_.balls.begin(), items_.balls.end());
    std::stable_sort(items_.balls.begin(), items_.balls.end(),
                     [](const Ball& a, const Ball& b) { return a.nearness < b.nearness; });
}

// --- Curves ---

void SpaceDrawing::FindEcliptic() {
    const EclipticGrid grid(scene_, camera_);
    const StrokeShades shades(kGridColor, options_.Sky());
    CurveStrokes strokes = MakeStrokes(&items_.strokes.emplace_back(), false);
    strokes.SetColor(shades, kGridStrength);
    strokes.SetLayer(SpaceLayer::kBehind);
    for (int32 spoke = 0; grid.rings > 0 && spoke < EclipticGrid::kSpokes; spoke++)
        strokes.AddLine(grid.center, grid.SpokeEnd(spoke));
    for (int32 ring = 1; ring <= grid.rings; ring++) {
        strokes.AddCurve(grid.Ring(ring));
        const ThreeVector mark = map_.See(grid.MarkOf(ring));
        if (!map_.IsBeforeEye(mark)) continue;
        const Point where = map_.Project(mark);
        if (IsInPicture(where)) marks_.push_back({where, grid.step * ring, grid.unit, '\0'});
    }
}

bool SpaceDrawing::HasManySamples(const SpaceScene& scene) {
    return CountSamples(scene) > kManySamples;
}

// Each list by one thread: the same ones whatever threads there are.
void SpaceDrawing::FindTrails(bool isCoarse, WorkerTeam* team) {
    std::vector<std::size_t> first;
    std::size_t samples = kMinSamples;
    for (std::size_t i = 0; i < scene_.trails.size(); i++) {
        if (samples >= kMinSamples) {
            first.push_back(i);
            samples = 0;
        }
        samples += scene_.trails[i].samples.size();
    }
    const std::size_t before = items_.strokes.size();
    items_.strokes.resize(before + first.size());
    WorkInParts(team, static_cast<int32>(first.size()), [&](int32 part) {
        const auto list = static_cast<std::size_t>(part);
        const std::size_t end = list + 1 < first.size() ? first[list + 1] : scene_.trails.size();
        CurveStrokes strokes = MakeStrokes(&items_.strokes[before + list], isCoarse);
        for (std::size_t i = first[list]; i < end; i++) {
            const StrokeShades shades(options_.Seen(scene_.trails[i].color), options_.Sky());
            strokes.SetColor(shades);
            strokes.AddTrail(scene_.trails[i], i < scene_.whole.size() && scene_.whole[i]);
        }
    });
}

void SpaceDrawing::FindOrbits() {
    CurveStrokes strokes = MakeStrokes(&items_.strokes.emplace_back(), false);
    for (const OrbitCurve& orbit : OrbitCurves(scene_.bodies)) {
        const StrokeShades shades(
            options_.Seen(scene_.bodies[static_cast<std::size_t>(orbit.body)].trailColor),
            options_.Sky());
        strokes.SetColor(shades, kOrbitStrength);
        strokes.AddCurve(orbit.dashes);
        const ThreeVector seen = map_.See(orbit.periapsis);
        if (!orbit.hasPeriapsis || !map_.IsBeforeEye(seen)) continue;
        const Point at = map_.Project(seen);
        const double arm = scale_ * kPeriapsisMark;
        const int32 layer = SpaceLayer::Of(map_.Nearness(seen));
        strokes.AddFlat({at.x - arm, at.y - arm}, {at.x + arm, at.y + arm}, shades.At(1.0), layer);
        strokes.AddFlat({at.x - arm, at.y + arm}, {at.x + arm, at.y - arm}, shades.At(1.0), layer);
    }
}

// --- Arrows ---

void SpaceDrawing::AddArrow(CurveStrokes* strokes, Point from, Point to, Pixel color) const {
    strokes->AddFlat(from, to, color, SpaceLayer::kBefore);
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::hypot(dx, dy);
    const double head = std::min(scale_ * kHead, length / 2);
    if (!(head > 0.0)) return;
    const double x = head * dx / length;
    const double y = head * dy / length;
    strokes->AddFlat(to, {to.x - x - y / 2, to.y - y + x / 2}, color, SpaceLayer::kBefore);
    strokes->AddFlat(to, {to.x - x + y / 2, to.y - y - x / 2}, color, SpaceLayer::kBefore);
}

// The largest is so long where it is seen from the side.
void SpaceDrawing::FindArrows(const std::vector<ThreeVector>& ways, double length,
                              double strength) {
    double largest = 0.0;
    for (const ThreeVector& way : ways)
        if (const double size = Length(way); std::isfinite(size)) largest = std::max(largest, size);
    if (!(largest > 0.0)) return;
    CurveStrokes strokes = MakeStrokes(&items_.strokes.emplace_back(), false);
    for (const Disc& disc : discs_) {
        const auto body = static_cast<std::size_t>(disc.body);
        const ThreeVector way = map_.SeeWay((scale_ * length / largest) * ways[body]);
        if (!IsFinite(way)) continue;
        const StrokeShades shades(options_.Seen(scene_.bodies[body].color), options_.Sky());
        AddArrow(&strokes, disc.center, {disc.center.x + way.x, disc.center.y - way.y},
                 shades.At(strength));
    }
}

// Around the body that is being edited.
void SpaceDrawing::FindRing() {
    constexpr int32 kSides = 40;
    CurveStrokes strokes = MakeStrokes(&items_.strokes.emplace_back(), false);
    for (const Disc& disc : discs_) {
        if (scene_.bodies[static_cast<std::size_t>(disc.body)].id != scene_.edited) continue;
        const double radius = disc.radius + scale_ * kRingGap;
        const auto at = [&](int32 side) {
            const double angle = 2.0 * std::numbers::pi * side / kSides;
            return Point{disc.center.x + radius * std::cos(angle),
                         disc.center.y + radius * std::sin(angle)};
        };
        for (int32 side = 0; side < kSides; side++)
            strokes.AddFlat(at(side), at(side + 1), ToPixel(options_.Text()), SpaceLayer::kBefore);
    }
}

// In the right-bottom corner.
void SpaceDrawing::FindAxes() {
    const Point from{map_.Width() - scale_ * kAxesInset, map_.Height() - scale_ * kAxesInset};
    const double length = scale_ * kAxisLength;
    CurveStrokes strokes = MakeStrokes(&items_.strokes.emplace_back(), false);
    constexpr ThreeVector kAxes[] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    for (std::size_t i = 0; i < 3; i++) {
        const ThreeVector way = map_.SeeWay(kAxes[i]);
        const Point to{from.x + length * way.x, from.y - length * way.y};
        AddArrow(&strokes, from, to, ToPixel(kAxisColors[i]));
        marks_.push_back({to, 0.0, 0.0, static_cast<char>('X' + i)});
    }
}
