#include "Simulation/History/RelativeSamples.h"

#include <algorithm>
#include <numeric>

#include "Simulation/History/TurningAxes.h"

namespace {

// Walks along both paths from moment to moment at which either has a sample, and makes of each what
// `combine` makes of where both were.
template <typename Combine>
std::vector<Sample> Merged(const std::vector<Sample>& path, const std::vector<Sample>& reference,
                           bool withMiddles, Combine combine) {
    std::vector<Sample> merged;
    std::size_t i = 0;
    std::size_t j = 0;
    const auto add = [&](double time, bool isJoined) {
        merged.push_back(combine(Between(path[i], path[i + 1], time),
                                 Between(reference[j], reference[j + 1], time)));
        merged.back().time = time;
        merged.back().isJoined = isJoined;
    };
    bool isJoined = false;  // to what the last interval gave
    while (i + 1 < path.size() && j + 1 < reference.size()) {
        const double end = std::min(path[i + 1].time, reference[j + 1].time);
        const double start = std::max(path[i].time, reference[j].time);
        const bool areKnown = path[i + 1].isJoined && reference[j + 1].isJoined;
        if (areKnown && end > start) {
            if (!isJoined) add(start, false);
            if (withMiddles) add(std::midpoint(start, end), true);
            add(end, true);
        }
        // Whoever goes on to a piece that is not joined to this one breaks the path.
        const bool advancesPath = path[i + 1].time <= end;
        const bool advancesReference = reference[j + 1].time <= end;
        isJoined = areKnown && (end > start || isJoined);
        if (advancesPath) i++;
        if (advancesReference) j++;
    }
    return merged;
}

// What moves with the frame's turning rate in it stands still.
Sample TurnedAt(const Sample& path, const Sample& pair, const ThreeVector& axis) {
    const TurningAxes axes = TurningAxes::Of(pair.position, axis);
    const ThreeVector place = axes.See(path.position);
    const ThreeVector velocity = axes.See(path.velocity);
    const ThreeVector way = axes.See(pair.position);
    const ThreeVector change = axes.See(pair.velocity);
    const double square = way.x * way.x + way.y * way.y;
    const double rate = square > 0.0 ? (way.x * change.y - way.y * change.x) / square : 0.0;
    return {path.time,
            place,
            {velocity.x + rate * place.y, velocity.y - rate * place.x, velocity.z},
            true};
}

}  // namespace

std::vector<Sample> Less(const std::vector<Sample>& path, const std::vector<Sample>& reference,
                         double weight) {
    return Merged(path, reference, false, [weight](const Sample& from, const Sample& taken) {
        return Sample{from.time, from.position - weight * taken.position,
                      from.velocity - weight * taken.velocity, true};
    });
}

std::vector<Sample> Turned(const std::vector<Sample>& path, const std::vector<Sample>& pair,
                           const ThreeVector& axis) {
    return Merged(path, pair, true, [&axis](const Sample& place, const Sample& way) {
        return TurnedAt(place, way, axis);
    });
}
