// The parallel projection along one axis: which axis is dropped, how many pixels a metre is, which
// place in space is seen in the middle of the view. A plain value.
#pragma once

#include <vector>

#include "Displays/Projection/ViewPlane.h"
#include "Displays/Trajectories/TrajectoryMap.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

class Body;

// The least diameter in pixels of the disc of a body of this radius in metres: grows with its
// logarithm from 0, at most 8192.
[[nodiscard]] double diameter_log(double radius);

struct Projection {
    static constexpr int32 kX = 1;
    static constexpr int32 kY = 2;
    static constexpr int32 kZ = 3;

    double scale = 1e-9;  // pixels per metre
    int32 axis = kZ;      // looked along; another number than the three is taken for Z
    ViewPlane plane;      // seen instead of the one across the axis, where it is on
    ThreeVector center;   // m; its component along the axis does not matter

    // The directions that are seen to the right and upwards: unit vectors.
    [[nodiscard]] ThreeVector RightWay() const;
    [[nodiscard]] ThreeVector UpWay() const;
    // What is seen to the right and upwards, m.
    [[nodiscard]] double Across(ThreeVector place) const;
    [[nodiscard]] double Up(ThreeVector place) const;

    // `middle`: the point of the view that shows `center`. Screen y grows downwards.
    [[nodiscard]] BPoint Map(BPoint middle, double x, double y, double z) const;
    // The same with `middle` at (0, 0).
    [[nodiscard]] PlaneMap Plane() const;
    // Half of the larger of the body's true diameter and diameter_log, pixels.
    [[nodiscard]] float DiscSize(double radius) const;

    // Moves the centre by pixels: what was so far right and below is in the middle now.
    void Shift(double right, double down);
    // Changes the scale; what is seen at this distance from the middle stays there.
    void ZoomAbout(BPoint fromMiddle, double factor);
    // Centre and scale so that all places are seen within a view of this size, with a margin. The
    // scale stays when they are all one place; nothing changes when there are none.
    void Fit(const std::vector<ThreeVector>& places, double width, double height);

private:
    // The centre becomes one that is seen there, as far as the axis is concerned the same.
    void CenterAt(double across, double up);
};
