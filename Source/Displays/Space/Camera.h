// Where a space display looks from: at what, how it is turned, and how far away it is. A plain
// value.
#pragma once

#include <vector>

#include "Model/Systems/ThreeVector.h"

struct Camera {
    static constexpr double kMinDistance = 1.0;   // m
    static constexpr double kMaxDistance = 1e30;  // m; the target is no farther out either
    // Pixels that a thing is seen long which is as long as it is far away, of the picture's smaller
    // side: so that side spans 45 degrees.
    static constexpr double kFocus = 1.2071;

    ThreeVector target;  // m, what is seen in the middle
    // To the right and upwards: unit vectors, at right angles to one another.
    ThreeVector right{1.0, 0.0, 0.0};
    ThreeVector up{0.0, 1.0, 0.0};
    double distance = 1e12;   // m, from the eye to the target
    bool isParallel = false;  // what is farther away looks no smaller

    // From the target towards the eye.
    [[nodiscard]] ThreeVector Back() const { return Cross(right, up); }
    // rad: of the eye as seen from the target, from x to y and from there to z.
    [[nodiscard]] double Azimuth() const;
    [[nodiscard]] double Elevation() const;

    // Of a camera whose numbers may be any: out of a file.
    void Normalize();

    // The horizon, the x-y plane, lies level. Angles in rad.
    void LookFrom(double azimuth, double elevation);
    // As what is seen were a ball that is turned by so many rad to the right and down.
    void Roll(double rightwards, double downwards);
    // The same with a level horizon, at most to where one looks straight down or up.
    void TurnLevel(double rightwards, double downwards);
    // What is seen at these parts of the focus from the middle, as far away as the target, comes to
    // the middle.
    void Pan(double rightwards, double downwards);
    // Makes all look larger by the factor; what is seen there stays there.
    void ZoomAbout(double rightwards, double downwards, double factor);
    // Target and distance, so that all places are seen in a picture whose sides are these parts of
    // the focus. The distance stays when they are all one place; nothing changes without places.
    void Fit(const std::vector<ThreeVector>& places, double width, double height);

    bool operator==(const Camera&) const = default;
};
