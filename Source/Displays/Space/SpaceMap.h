// Where a camera sees places, in a picture of a size in device pixels: (0, 0) is its left-top
// corner. A plain value.
//
// Camera coordinates are metres from the target: x to the right, y upwards, z towards the eye. They
// come from places by a linear map; so curves may be cut there.
#pragma once

#include "Displays/Space/Camera.h"

class SpaceMap {
public:
    struct Point {
        double x = 0.0;
        double y = 0.0;
    };

    SpaceMap(const Camera& camera, double width, double height);

    [[nodiscard]] ThreeVector See(const ThreeVector& place) const {
        return SeeWay(place - camera_.target);
    }
    // A displacement, or a velocity.
    [[nodiscard]] ThreeVector SeeWay(const ThreeVector& way) const {
        return {Dot(way, camera_.right), Dot(way, camera_.up), Dot(way, back_)};
    }

    // What is not, is not seen. The farthest that is.
    [[nodiscard]] bool IsBeforeEye(const ThreeVector& seen) const { return seen.z <= nearest_; }
    [[nodiscard]] double Nearest() const { return nearest_; }
    // Of what is before the eye; not finite if it is too far out for numbers.
    [[nodiscard]] Point Project(const ThreeVector& seen) const {
        const double scale = ScaleAt(seen);
        return {middle_.x + scale * seen.x, middle_.y - scale * seen.y};
    }
    // Pixels that a metre is seen long there, across the line of sight.
    [[nodiscard]] double ScaleAt(const ThreeVector& seen) const {
        return camera_.isParallel ? scale_ : focus_ / (camera_.distance - seen.z);
    }
    // At the target.
    [[nodiscard]] double Scale() const { return scale_; }
    // How near to the eye, from -1 for the farthest to 1 for the nearest; 0 is the target.
    [[nodiscard]] double Nearness(const ThreeVector& seen) const {
        return seen.z / (camera_.distance + (seen.z < 0.0 ? -seen.z : seen.z));
    }

    // The smaller side's pixels times Camera::kFocus.
    [[nodiscard]] double Focus() const { return focus_; }
    [[nodiscard]] Point Middle() const { return middle_; }
    [[nodiscard]] double Width() const { return 2.0 * middle_.x; }
    [[nodiscard]] double Height() const { return 2.0 * middle_.y; }

private:
    Camera camera_;
    ThreeVector back_;
    Point middle_;
    double focus_;    // pixels
    double scale_;    // pixels per metre
    double nearest_;  // m, z
};
