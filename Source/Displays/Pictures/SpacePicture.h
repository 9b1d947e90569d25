// A picture of space, drawn without a window. No state.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Displays/Space/SpaceScene.h"

struct PictureSettings;

// Where a picture is looked at from. A plain value.
struct Viewpoint {
    double azimuth = 0.0;            // rad
    double elevation = 0.0;          // rad
    std::optional<double> distance;  // m, from the heaviest body; none: all orbits are seen
};

// The bytes of a PNG file.
[[nodiscard]] std::vector<std::byte> EncodeSpacePicture(const SpaceScene& scene,
                                                        const Viewpoint& from,
                                                        const PictureSettings& settings);
