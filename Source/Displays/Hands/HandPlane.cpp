#include "Displays/Hands/HandPlane.h"

namespace {

// An axis that is seen shorter than this part of itself is looked along.
constexpr double kShortest = 1e-3;

ThreeVector UnitOf(int32 axis) {
    return {axis == 0 ? 1.0 : 0.0, axis == 1 ? 1.0 : 0.0, axis == 2 ? 1.0 : 0.0};
}

}  // namespace

BPoint HandPlane::See(const ThreeVector& way, double pixels) const {
    return {static_cast<float>(pixels * Dot(way, right)),
            static_cast<float>(-pixels * Dot(way, up))};
}

ThreeVector HandPlane::WayOf(BPoint seen, double pixels, int32 axis) const {
    if (!(pixels > 0.0)) return {};
    const double across = static_cast<double>(seen.x) / pixels;
    const double upwards = -static_cast<double>(seen.y) / pixels;
    if (axis == kAnyWay) return across * right + upwards * up;
    const ThreeVector unit = UnitOf(axis);
    const double x = Dot(unit, right);
    const double y = Dot(unit, up);
    const double square = x * x + y * y;
    if (square < kShortest * kShortest) return {};
    return ((across * x + upwards * y) / square) * unit;
}
