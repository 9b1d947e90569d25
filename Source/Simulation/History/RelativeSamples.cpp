#include "Simulation/History/RelativeSamples.h"

#include <algorithm>

namespace {

Sample DifferenceAt(double time, const Sample* path, const Sample* reference, double weight) {
    const Sample from = Between(path[0], path[1], time);
    const Sample taken = Between(reference[0], reference[1], time);
    return {time, from.position - weight * taken.position, from.velocity - weight * taken.velocity,
            true};
}

}  // namespace

std::vector<Sample> Less(const std::vector<Sample>& path, const std::vector<Sample>& reference,
                         double weight) {
    std::vector<Sample> less;
    std::size_t i = 0;
    std::size_t j = 0;
    bool isJoined = false;  // to what the last interval gave
    while (i + 1 < path.size() && j + 1 < reference.size()) {
        const double end = std::min(path[i + 1].time, reference[j + 1].time);
        const double start = std::max(path[i].time, reference[j].time);
        const bool areKnown = path[i + 1].isJoined && reference[j + 1].isJoined;
        if (areKnown && end > start) {
            if (!isJoined) {
                less.push_back(DifferenceAt(start, &path[i], &reference[j], weight));
                less.back().isJoined = false;
            }
            less.push_back(DifferenceAt(end, &path[i], &reference[j], weight));
        }
        // Whoever goes on to a piece that is not joined to this one breaks the path.
        const bool advancesPath = path[i + 1].time <= end;
        const bool advancesReference = reference[j + 1].time <= end;
        isJoined = areKnown && (end > start || isJoined);
        if (advancesPath) i++;
        if (advancesReference) j++;
    }
    return less;
}
