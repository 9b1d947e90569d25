#include "Displays/Trajectories/TrailSource.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/RelativeSamples.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr double kEver = std::numeric_limits<double>::infinity();
// To copy and to paint more would take too long; more are hardly seen one by one.
constexpr std::size_t kMaxSamples = 400'000;
constexpr std::size_t kLeastOfBody = 64;

// Between two times, where the samples reach farther.
void Cut(double from, double to, std::vector<Sample>* samples) {
    if (samples->size() < 2) return;
    Sample& first = samples->front();
    if (const Sample& next = (*samples)[1]; first.time < from && from <= next.time && next.isJoined)
        first = Between(first, next, from);
    Sample& last = samples->back();
    if (const Sample& before = (*samples)[samples->size() - 2];
        last.isJoined && before.time <= to && to < last.time)
        last = Between(before, last, to);
}

}  // namespace

// One run, and what its bodies look like.
struct TrailSource::Part {
    const AbEpoch* epoch;
    double from;
    double to;
    std::unordered_map<int64, rgb_color> colors;  // of the bodies with trails
};

std::vector<KeptTrails::Trail> TrailSource::Take(EpochPortal* portal) const {
    std::vector<KeptTrails::Trail> trails;
    std::size_t left = kMaxSamples;
    for (const Part& part : FindParts(portal)) {
        const std::size_t most = left / std::max<std::size_t>(part.colors.size(), 1);
        for (const auto& [body, color] : part.colors) {
            trails.push_back({color, RelativeSamplesOf(part, body, std::max(most, kLeastOfBody))});
            left -= std::min(left, trails.back().samples.size());
        }
        if (left == 0) break;
    }
    return trails;
}

std::vector<TrailSource::Part> TrailSource::FindParts(EpochPortal* portal) const {
    std::vector<Part> parts;
    const ReadGuard guard(portal);
    std::unordered_map<int64, const MassSystem*> looks;
    for (const Body* const body : portal->BodiesInMassOrder())
        looks.emplace(body->ID(), body);
    const AbEpoch* epoch = run != nullptr && portal->HasEpoch(run) ? run : portal->FocusEpoch();
    for (double to = now; epoch != nullptr && history->SpanOf(epoch); to = kEver) {
        const bool isErased = epoch == erasedIn;
        Part part{epoch, isErased ? erasedUntil : -kEver, to, {}};
        const AbEpoch* const parent = epoch->Parent();
        for (const int64 body : history->BodiesOf(epoch)) {
            const MassSystem*& look = looks[body];
            // It has become part of another one, and looks as it did when the run began.
            if (look == nullptr && parent != nullptr) look = parent->SystemFromID(body);
            if (look != nullptr && look->TrailOn()) part.colors.emplace(body, look->TrailColor());
        }
        parts.push_back(std::move(part));
        if (isErased) break;
        epoch = parent;
    }
    return parts;
}

std::vector<Sample> TrailSource::SamplesOf(const Part& part, int64 body, std::size_t most) const {
    std::vector<Sample> samples = history->Samples(part.epoch, body, part.from, part.to, most);
    Cut(part.from, part.to, &samples);
    return samples;
}

std::vector<Sample> TrailSource::RelativeSamplesOf(const Part& part, int64 body,
                                                   std::size_t most) const {
    // What stands still leaves no trail.
    if (reference.size() == 1 && reference[0].body == body) return {};
    std::vector<Sample> samples = SamplesOf(part, body, most);
    double weight = 0.0;
    for (const Member& member : reference)
        weight += member.weight;
    for (const Member& member : reference)
        samples = Less(samples, SamplesOf(part, member.body, most), member.weight / weight);
    return samples;
}
