#include "Displays/Space/SpaceMap.h"

#include <algorithm>
#include <limits>

namespace {

// What is nearer to the eye, in parts of the target's distance, is not before it.
constexpr double kNearest = 1e-4;

}  // namespace

SpaceMap::SpaceMap(const Camera& camera, double width, double height)
    : camera_(camera),
      back_(camera.Back()),
      middle_{width / 2, height / 2},
      focus_(Camera::kFocus * std::min(width, height)),
      scale_(focus_ / camera.distance),
      nearest_(camera.isParallel ? std::numeric_limits<double>::infinity()
                                 : (1.0 - kNearest) * camera.distance) {}
