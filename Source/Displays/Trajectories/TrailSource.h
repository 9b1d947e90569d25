// Which trails the kept runs have for a display: those of the run in the focus epoch and of the
// runs that led to it. A plain value, used with the display's lock.
#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Displays/Trajectories/KeptTrails.h"

// How much of its trails a display shows: all, those of a time, or so many turns of each body. A
// plain value.
struct TrailLength {
    double time = 0.0;   // s; 0: not limited by time
    double turns = 0.0;  // of the direction in which a body is seen to move; 0: not limited by them
    bool isFading = true;  // towards the older end, if there is a limit

    [[nodiscard]] bool IsLimited() const { return time > 0.0 || turns > 0.0; }
    bool operator==(const TrailLength&) const = default;
};

class AbEpoch;
class EpochPortal;
class RunHistory;

struct TrailSource {
    // What stands still: the mean of these bodies, weighted.
    struct Member {
        int64 body;
        double weight;
    };
    // And the direction from one body to another (TurningAxes).
    struct Turning {
        int64 first;
        int64 second;
        ThreeVector axis;
    };
    // One run, and what its bodies look like.
    struct Part {
        const AbEpoch* epoch;
        double from;                                  // s, and likewise:
        double to;                                    // where a branch begins
        std::unordered_map<int64, rgb_color> colors;  // of the bodies with trails
    };

    const RunHistory* history = nullptr;
    double now = 0.0;              // s, where the trails end
    const AbEpoch* run = nullptr;  // which that time is in; null: the one in focus
    std::vector<Member> reference;
    std::optional<Turning> turning;
    TrailLength length;
    // No trails from before that time in this epoch, nor from before it.
    const AbEpoch* erasedIn = nullptr;
    double erasedUntil = 0.0;  // s

    // The runs, the newest first. Takes the portal's read lock.
    [[nodiscard]] std::vector<Part> FindParts(EpochPortal* portal) const;
    // Their trails. Takes no lock of the model.
    [[nodiscard]] std::vector<KeptTrails::Trail> Take(const std::vector<Part>& parts) const;

private:
    struct Span {
        const AbEpoch* epoch;
        double from;  // s
        double to;    // s
    };
    [[nodiscard]] std::vector<Sample> SamplesOf(const Span& span, int64 body,
                                                std::size_t most) const;
    [[nodiscard]] std::vector<Sample> SeenSamplesOf(const Span& span, int64 body,
                                                    std::size_t most) const;
};
