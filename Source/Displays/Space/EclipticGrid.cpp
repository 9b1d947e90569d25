#include "Displays/Space/EclipticGrid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Displays/Projection/PictureTexts.h"
#include "Displays/Space/Camera.h"

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kMinRings = 3.0;
constexpr double kBeyond = 1.1;  // the farthest body
// Less than so many of a unit is measured in kilometres.
constexpr double kMinUnits = 0.01;
constexpr double kKilometre = 1000.0;
// Cubics with these many ends differ from a circle by a millionth of it.
constexpr int32 kArcs = 24;

double FarthestOf(const SpaceScene& scene, const ThreeVector& center) {
    double farthest = 0.0;
    for (const SpaceBody& body : scene.bodies)
        if (const double away = Length(body.position - center);
            std::isfinite(away) && away <= Camera::kMaxDistance)
            farthest = std::max(farthest, away);
    return farthest;
}

}  // namespace

EclipticGrid::EclipticGrid(const SpaceScene& scene, const Camera& camera) {
    if (scene.bodies.empty()) return;
    if (const ThreeVector heaviest = scene.bodies.front().position;
        IsFinite(heaviest) && Length(heaviest) <= Camera::kMaxDistance)
        center = heaviest;
    const double shown = camera.distance + Length(camera.target - center);
    const double reach = std::min(kBeyond * FarthestOf(scene, center), shown);
    if (!(reach > 0.0) || !std::isfinite(reach)) return;
    const double most = reach / kMinRings;
    unit = most < kMinUnits * scene.lengthUnit ? std::min(kKilometre, scene.lengthUnit)
                                               : scene.lengthUnit;
    step = unit * RoundLength(most / unit);
    if (!(step > 0.0)) return;
    rings = static_cast<int32>(reach / step);
}

std::vector<Sample> EclipticGrid::Ring(int32 ring) const {
    const double radius = step * ring;
    std::vector<Sample> samples;
    for (int32 i = 0; i <= kArcs; i++) {
        // Time is the angle.
        const double angle = kTurn * i / kArcs;
        const double x = radius * std::cos(angle);
        const double y = radius * std::sin(angle);
        samples.push_back({angle, center + ThreeVector{x, y, 0.0}, {-y, x, 0.0}, i > 0});
    }
    return samples;
}

ThreeVector EclipticGrid::SpokeEnd(int32 spoke) const {
    const double angle = kTurn * spoke / kSpokes;
    return center + step * rings * ThreeVector{std::cos(angle), std::sin(angle), 0.0};
}

ThreeVector EclipticGrid::MarkOf(int32 ring) const {
    return center + ThreeVector{step * ring, 0.0, 0.0};
}
