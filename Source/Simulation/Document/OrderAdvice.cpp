#include "Simulation/Document/OrderAdvice.h"

#include <cmath>
#include <numbers>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"

namespace {

constexpr double kManySteps = 10'000.0;
constexpr double kRounding = 1000.0;

}  // namespace

// A step is about cutoff^(1 / (order - 1)) of the time in which the pair turns by a radian.
std::optional<int64> TooManySteps(EpochPortal* portal) {
    const ReadGuard guard(portal);
    const AbEpoch& epoch = *portal->FocusEpoch();
    if (epoch.Order() != kMaxLowOrder) return std::nullopt;
    const double steps = 2 * std::numbers::pi * std::pow(epoch.Cutoff(), -1.0 / (kMaxLowOrder - 1));
    if (!(steps > kManySteps)) return std::nullopt;
    return static_cast<int64>(std::round(steps / kRounding) * kRounding);
}
