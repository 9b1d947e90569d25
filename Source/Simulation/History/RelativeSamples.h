// The path of a body as another one sees it. No state, any thread.
#pragma once

#include <vector>

#include "Simulation/History/Sample.h"

// `path` less `weight` times `reference`, where both are known. The cubics between the samples of
// the result are the differences of those of both.
[[nodiscard]] std::vector<Sample> Less(const std::vector<Sample>& path,
                                       const std::vector<Sample>& reference, double weight);
