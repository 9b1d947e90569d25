#include "Displays/Projection/ViewPlane.h"

#include <cmath>

namespace {

// What is left of a unit vector is taken for its direction if it is longer.
constexpr double kLeast = 1e-6;

ThreeVector UnitOf(const ThreeVector& v) {
    const double length = Length(v);
    return length > 0.0 && std::isfinite(length) ? (1.0 / length) * v : ThreeVector{};
}

// Unit vectors: what of one lies across the other.
ThreeVector PartAcross(const ThreeVector& v, const ThreeVector& from) {
    const ThreeVector part = v - Dot(v, from) * from;
    return Length(part) > kLeast ? UnitOf(part) : ThreeVector{};
}

}  // namespace

void ViewPlane::Normalize() {
    right = UnitOf(right);
    up = PartAcross(UnitOf(up), right);
    if (right == ThreeVector{} || up == ThreeVector{}) *this = {};
}

ViewPlane PlaneAcross(const ThreeVector& normal) {
    const ThreeVector back = UnitOf(normal);
    if (back == ThreeVector{}) return {};
    ThreeVector right = PartAcross({1.0, 0.0, 0.0}, back);
    if (right == ThreeVector{}) right = PartAcross({0.0, 1.0, 0.0}, back);
    return {right, Cross(back, right)};
}
