#include "Displays/Projection/Projection.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kLogUnit = 1423155.0;  // m; a body of this radius or less has no least diameter
constexpr double kMaxDiameter = 8192.0;
// Coordinates of the screen are single numbers; further out than this all places look alike.
constexpr double kFarAway = 1e30;
// Of the view that Fit leaves empty on all sides together.
constexpr double kMargin = 0.16;

float ToScreen(double value) {
    return static_cast<float>(std::clamp(value, -kFarAway, kFarAway));
}

struct Interval {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();

    void Add(double value) {
        least = std::min(least, value);
        most = std::max(most, value);
    }
    [[nodiscard]] double Middle() const { return least + (most - least) / 2; }
    // The scale at which it fills this many pixels, without the margin.
    [[nodiscard]] double ScaleFor(double pixels) const {
        return pixels * (1.0 - kMargin) / (most - least);
    }
};

bool IsScale(double scale) {
    return scale > 0.0 && scale < std::numeric_limits<double>::infinity();
}

}  // namespace

double diameter_log(double radius) {
    return std::min(kMaxDiameter, std::max(0.0, std::log(radius / kLogUnit)));
}

ThreeVector Projection::RightWay() const {
    if (plane.IsOn()) return plane.right;
    return axis == kX ? ThreeVector{0.0, 1.0, 0.0} : ThreeVector{1.0, 0.0, 0.0};
}

ThreeVector Projection::UpWay() const {
    if (plane.IsOn()) return plane.up;
    return axis == kX || axis == kY ? ThreeVector{0.0, 0.0, 1.0} : ThreeVector{0.0, 1.0, 0.0};
}

// One coordinate alone along an axis: the others may be any.
double Projection::Across(ThreeVector place) const {
    if (plane.IsOn()) return Dot(place, plane.right);
    return axis == kX ? place.y : place.x;
}

double Projection::Up(ThreeVector place) const {
    if (plane.IsOn()) return Dot(place, plane.up);
    return axis == kX || axis == kY ? place.z : place.y;
}

BPoint Projection::Map(BPoint middle, double x, double y, double z) const {
    const ThreeVector place{x, y, z};
    return {ToScreen(middle.x + scale * (Across(place) - Across(center))),
            ToScreen(middle.y - scale * (Up(place) - Up(center)))};
}

PlaneMap Projection::Plane() const {
    return {center, scale * RightWay(), -scale * UpWay()};
}

float Projection::DiscSize(double radius) const {
    return ToScreen(std::max(2.0 * scale * radius, diameter_log(radius)) / 2.0);
}

void Projection::Shift(double right, double down) {
    if (!IsScale(scale)) return;  // as a document may have it
    CenterAt(Across(center) + right / scale, Up(center) - down / scale);
}

void Projection::ZoomAbout(BPoint fromMiddle, double factor) {
    if (!IsScale(scale * factor)) return;
    Shift(fromMiddle.x, fromMiddle.y);
    scale *= factor;
    Shift(-fromMiddle.x, -fromMiddle.y);
}

void Projection::Fit(const std::vector<ThreeVector>& places, double width, double height) {
    Interval across;
    Interval up;
    for (const ThreeVector& place : places) {
        if (!std::isfinite(Across(place)) || !std::isfinite(Up(place))) continue;
        across.Add(Across(place));
        up.Add(Up(place));
    }
    if (across.most < across.least) return;
    const double fitting = std::min(across.ScaleFor(width), up.ScaleFor(height));
    if (IsScale(fitting)) scale = fitting;
    CenterAt(across.Middle(), up.Middle());
}

void Projection::CenterAt(double across, double up) {
    if (plane.IsOn()) {
        center += (across - Across(center)) * plane.right + (up - Up(center)) * plane.up;
        return;
    }
    (axis == kX ? center.y : center.x) = across;
    (axis == kX || axis == kY ? center.z : center.y) = up;
}
