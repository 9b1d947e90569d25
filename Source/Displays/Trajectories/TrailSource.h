// Which trails the kept runs have for a display: those of the run in the focus epoch and of the
// runs that led to it. A plain value, used with the display's lock.
#pragma once

#include <cstddef>
#include <vector>

#include "Displays/Trajectories/KeptTrails.h"

class AbEpoch;
class EpochPortal;
class RunHistory;

struct TrailSource {
    // What stands still: the mean of these bodies, weighted.
    struct Member {
        int64 body;
        double weight;
    };

    const RunHistory* history = nullptr;
    double now = 0.0;              // s, where the trails end
    const AbEpoch* run = nullptr;  // which that time is in; null: the one in focus
    std::vector<Member> reference;
    // No trails from before that time in this epoch, nor from before it.
    const AbEpoch* erasedIn = nullptr;
    double erasedUntil = 0.0;  // s

    // Takes the portal's read lock.
    [[nodiscard]] std::vector<KeptTrails::Trail> Take(EpochPortal* portal) const;

private:
    struct Part;
    [[nodiscard]] std::vector<Part> FindParts(EpochPortal* portal) const;
    [[nodiscard]] std::vector<Sample> SamplesOf(const Part& part, int64 body,
                                                std::size_t most) const;
    [[nodiscard]] std::vector<Sample> RelativeSamplesOf(const Part& part, int64 body,
                                                        std::size_t most) const;
};
