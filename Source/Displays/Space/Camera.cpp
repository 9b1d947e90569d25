#include "Displays/Space/Camera.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Displays/Trajectories/Extent.h"

namespace {

constexpr double kRightAngle = std::numbers::pi / 2;
// Of vectors shorter than this the direction says nothing.
constexpr double kMinLength = 1e-6;
// Of the picture that Fit leaves empty on all sides together.
constexpr double kMargin = 0.16;

double Clamped(double value, double least, double most, double otherwise) {
    return std::isfinite(value) ? std::clamp(value, least, most) : otherwise;
}

// False: it has no direction.
bool MakeUnit(ThreeVector* v) {
    const double largest = std::max({std::abs(v->x), std::abs(v->y), std::abs(v->z)});
    if (!std::isfinite(largest) || !(largest > 0.0)) return false;
    // Twice, since numbers may be too large to be squared, or too small.
    *v *= 1.0 / largest;
    *v *= 1.0 / Length(*v);
    return IsFinite(*v);
}

ThreeVector Turned(const ThreeVector& v, const ThreeVector& axis, double angle) {
    return std::cos(angle) * v + std::sin(angle) * Cross(axis, v) +
           ((1.0 - std::cos(angle)) * Dot(axis, v)) * axis;
}

}  // namespace

double Camera::Elevation() const {
    return std::asin(std::clamp(Back().z, -1.0, 1.0));
}

// From straight above or below, what is to the right decides.
double Camera::Azimuth() const {
    const ThreeVector back = Back();
    return std::hypot(back.x, back.y) > kMinLength ? std::atan2(back.y, back.x)
                                                   : std::atan2(-right.x, right.y);
}

void Camera::Normalize() {
    for (double* const coordinate : {&target.x, &target.y, &target.z})
        *coordinate = Clamped(*coordinate, -kMaxDistance, kMaxDistance, 0.0);
    distance = Clamped(distance, kMinDistance, kMaxDistance, Camera().distance);
    const bool hasRight = MakeUnit(&right);
    const bool hasUp = MakeUnit(&up);
    if (hasRight && hasUp) {
        up -= Dot(up, right) * right;
        if (Length(up) > kMinLength && MakeUnit(&up)) {
            // Once more: what was nearly parallel is not at right angles yet.
            up -= Dot(up, right) * right;
            MakeUnit(&up);
            return;
        }
    }
    right = Camera().right;
    up = Camera().up;
}

void Camera::LookFrom(double azimuth, double elevation) {
    const double level = std::cos(elevation);
    const ThreeVector back{level * std::cos(azimuth), level * std::sin(azimuth),
                           std::sin(elevation)};
    right = {-std::sin(azimuth), std::cos(azimuth), 0.0};
    up = Cross(back, right);
    Normalize();
}

void Camera::Roll(double rightwards, double downwards) {
    right = Turned(right, up, -rightwards);
    up = Turned(up, right, -downwards);
    Normalize();
}

void Camera::TurnLevel(double rightwards, double downwards) {
    LookFrom(Azimuth() - rightwards,
             std::clamp(Elevation() + downwards, -kRightAngle, kRightAngle));
}

void Camera::Pan(double rightwards, double downwards) {
    target += distance * (rightwards * right - downwards * up);
    Normalize();
}

void Camera::ZoomAbout(double rightwards, double downwards, double factor) {
    const double before = distance;
    const double after = std::clamp(distance / factor, kMinDistance, kMaxDistance);
    if (!std::isfinite(after)) return;
    target += (before - after) * (rightwards * right - downwards * up);
    distance = after;
    Normalize();
}

void Camera::Fit(const std::vector<ThreeVector>& places, double width, double height) {
    const ThreeVector back = Back();
    Extent seen;
    const auto see = [&](const ThreeVector& place) {
        return ThreeVector{Dot(place, right), Dot(place, up), Dot(place, back)};
    };
    for (const ThreeVector& place : places)
        seen.Add(see(place));
    if (seen.IsEmpty()) return;
    const ThreeVector middle = seen.low + 0.5 * (seen.high - seen.low);
    target = middle.x * right + middle.y * up + middle.z * back;
    const double across = 2.0 / (width * (1.0 - kMargin));
    const double upwards = 2.0 / (height * (1.0 - kMargin));
    double fitting = 0.0;
    for (const ThreeVector& place : places) {
        const ThreeVector from = see(place - target);
        if (!IsFinite(from)) continue;
        const double least = std::max(across * std::abs(from.x), upwards * std::abs(from.y));
        fitting = std::max(fitting, isParallel || least == 0.0 ? least : least + from.z);
    }
    if (fitting > 0.0) distance = fitting;
    Normalize();
}
