// The path of a body as others see it. No state, any thread.
#pragma once

#include <vector>

#include "Simulation/History/Sample.h"

// `path` less `weight` times `reference`, where both are known. The cubics between the samples of
// the result are the differences of those of both.
[[nodiscard]] std::vector<Sample> Less(const std::vector<Sample>& path,
                                       const std::vector<Sample>& reference, double weight);

// `path`, which is relative to the frame's origin, in a frame that turns about the axis with a pair
// of bodies (TurningAxes); `pair`: the way from the first to the second. As fine as is needed to
// follow the turning, too.
[[nodiscard]] std::vector<Sample> Turned(const std::vector<Sample>& path,
                                         const std::vector<Sample>& pair, const ThreeVector& axis);
