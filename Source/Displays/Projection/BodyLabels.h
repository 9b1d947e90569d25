// The systems that a display can name and follow: every body in mass order, and the groups. Copied
// from the model under its read lock; afterwards used with the display's lock.
#pragma once

#include <string>
#include <vector>

#include "Displays/Trajectories/TrajectoryCache.h"
#include "Platform/Support/SupportDefs.h"

class AbEpoch;
class Body;

struct BodyLabels {
    struct Label {
        int64 id;
        std::string name;
        bool operator==(const Label&) const = default;
    };
    std::vector<Label> bodies;  // in mass order, as a trajectory view counts them
    std::vector<Label> groups;

    bool operator==(const BodyLabels&) const = default;
};

[[nodiscard]] BodyLabels ReadBodyLabels(const AbEpoch& epoch, const std::vector<Body*>& bodies);

// The bodies that a system consists of, weighted with their masses; all alike when none has mass.
// Empty when there is no such system.
[[nodiscard]] std::vector<TrajectoryCache::Member> ReadMembers(const AbEpoch& epoch,
                                                               const std::vector<Body*>& bodies,
                                                               int64 system);
