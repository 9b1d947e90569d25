// What a picture of space is made of, when it has been found where things are seen. Coordinates are
// device pixels from the picture's left-top corner. Plain values.
#pragma once

#include <vector>

#include "Displays/Space/SpaceMap.h"
#include "Platform/Interface/Canvas/PixelBuffer.h"

// Layers from the back to the front: what stands behind all, slices of the depth of space, what
// stands before all.
struct SpaceLayer {
    static constexpr int32 kBehind = 0;
    static constexpr int32 kSlices = 1022;
    static constexpr int32 kBefore = kSlices + 1;
    static constexpr int32 kCount = kSlices + 2;

    // Of what is so near (SpaceMap::Nearness).
    [[nodiscard]] static int32 Of(double nearness) {
        const auto slice = static_cast<int32>((nearness + 1.0) * (kSlices / 2.0));
        return 1 + (slice < 0 ? 0 : slice >= kSlices ? kSlices - 1 : slice);
    }
};

struct Stroke {
    float x0;
    float y0;
    float x1;
    float y1;
    Pixel color;
    int32 layer;
};

struct Ball {
    double x;
    double y;
    double radius;
    rgb_color color;
    bool isLight;       // shines itself
    ThreeVector light;  // where the light comes from, in camera coordinates; a unit vector
    double nearness;
};

struct SpaceItems {
    // In any number of lists; of strokes in one layer the later ones are drawn over the earlier.
    std::vector<std::vector<Stroke>> strokes;
    std::vector<Ball> balls;  // the farthest first
};
