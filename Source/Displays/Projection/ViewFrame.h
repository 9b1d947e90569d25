// What stands still in a display, and what it turns with.
#pragma once

#include <optional>
#include <vector>

#include "Displays/Trajectories/TrajectoryCache.h"
#include "Model/Epochs/EpochLimits.h"

class AbEpoch;
class Body;
class EpochPortal;

// The bodies whose direction from one another stays: the first, about which the second goes.
struct TurningPair {
    int64 first = kNoSystemID;
    int64 second = kNoSystemID;
    ThreeVector axis;  // about which the display turns

    [[nodiscard]] bool IsOn() const { return second != kNoSystemID; }
    bool operator==(const TurningPair&) const = default;
};

struct ViewFrame {
    std::vector<TrajectoryCache::Member> reference;
    std::optional<TrajectoryCache::Turning> turning;
};

// Followed (kRootSystemID: all together) is what the view is centred on; where it is nothing, the
// pair. Without the bodies of what is asked for, empty. The caller holds the model's read lock.
[[nodiscard]] ViewFrame ReadFrame(const AbEpoch& epoch, const std::vector<Body*>& bodies,
                                  int64 followed, const TurningPair& pair);
// That body and the followed one, or else the one that it goes about. Takes the portal's read lock.
[[nodiscard]] TurningPair FindPair(EpochPortal* portal, int64 followed, int64 second);
