// How the picture's plane lies in space where it is not square to an axis. A plain value.
#pragma once

#include "Model/Systems/ThreeVector.h"

struct ViewPlane {
    // What is seen to the right and upwards: unit vectors at right angles; 0: there is none.
    ThreeVector right;
    ThreeVector up;

    [[nodiscard]] bool IsOn() const { return right != ThreeVector{}; }
    // Of a plane whose numbers may be any: out of a file.
    void Normalize();

    bool operator==(const ViewPlane&) const = default;
};

// The plane across this direction, which points at whoever looks; x lies to the right as far as it
// can. None across no direction.
[[nodiscard]] ViewPlane PlaneAcross(const ThreeVector& normal);
