#include "Displays/Trajectories/TrailSource.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "Displays/Trajectories/TurnCounter.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/RelativeSamples.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr double kEver = std::numeric_limits<double>::infinity();
// To copy and to paint more would take too long; more are hardly seen one by one.
constexpr std::size_t kMaxSamples = 400'000;
constexpr std::size_t kMinOfBody = 64;

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

// From a trail's oldest sample on, which the parts of a run before may have.
void Fade(double since, double now, std::vector<KeptTrails::Trail>* trails) {
    std::unordered_map<int64, double> oldest;
    for (const KeptTrails::Trail& trail : *trails) {
        if (trail.samples.empty()) continue;
        double& time = oldest.emplace(trail.body, now).first->second;
        time = std::min(time, trail.samples.front().time);
    }
    for (KeptTrails::Trail& trail : *trails) {
        trail.faintAt = std::isfinite(since) ? since : oldest[trail.body];
        trail.fullAt = now;
    }
}

}  // namespace

std::vector<KeptTrails::Trail> TrailSource::Take(const std::vector<Part>& parts) const {
    std::vector<KeptTrails::Trail> trails;
    std::unordered_map<int64, TurnCounter> turns;
    const double since = length.time > 0.0 ? now - length.time : -kEver;
    std::size_t left = kMaxSamples;
    double to = now;
    for (const Part& part : parts) {
        Span span{part.epoch, std::max(part.from, since),
                  std::min(std::exchange(to, kEver), part.to)};
        // Where time falls a run comes to what is earlier.
        if (const auto kept = history->SpanOf(part.epoch); kept && kept->end < kept->start)
            span = {part.epoch, span.to == kEver ? -kEver : span.to,
                    part.from == -kEver ? kEver : part.from};
        const std::size_t most = left / std::max<std::size_t>(part.colors.size(), 1);
        for (const auto& [body, color] : part.colors) {
            trails.push_back({body, color, SeenSamplesOf(span, body, std::max(most, kMinOfBody))});
            std::vector<Sample>& samples = trails.back().samples;
            if (length.turns > 0.0) turns.emplace(body, length.turns).first->second.Cut(&samples);
            left -= std::min(left, samples.size());
        }
        if (left == 0) break;
    }
    if (length.IsLimited() && length.isFading) Fade(since, now, &trails);
    return trails;
}

std::vector<TrailSource::Part> TrailSource::FindParts(EpochPortal* portal) const {
    std::vector<Part> parts;
    const ReadGuard guard(portal);
    std::unordered_map<int64, const MassSystem*> looks;
    for (const Body* const body : portal->BodiesInMassOrder())
        looks.emplace(body->ID(), body);
    const AbEpoch* epoch = run != nullptr && portal->HasEpoch(run) ? run : portal->FocusEpoch();
    while (epoch != nullptr) {
        const auto way = history->WayTo(*epoch);
        const bool isErased = epoch == erasedIn;
        // One that was edited, or whose run just begins, goes on from where the one above ends.
        if (!way && !isErased && epoch->Parent() != nullptr &&
            epoch->Parent()->Time() == epoch->Time()) {
            epoch = epoch->Parent();
            continue;
        }
        if (!way) break;
        Part part{
            way->run, isErased ? erasedUntil : -kEver, way->run == epoch ? kEver : way->end, {}};
        const AbEpoch* const parent = epoch->Parent();
        for (const int64 body : history->BodiesOf(way->run)) {
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

std::vector<Sample> TrailSource::SamplesOf(const Span& span, int64 body, std::size_t most) const {
    std::vector<Sample> samples = history->Samples(span.epoch, body, span.from, span.to, most);
    Cut(span.from, span.to, &samples);
    return samples;
}

std::vector<Sample> TrailSource::SeenSamplesOf(const Span& span, int64 body,
                                               std::size_t most) const {
    // What stands still leaves no trail.
    if (reference.size() == 1 && reference[0].body == body) return {};
    std::vector<Sample> samples = SamplesOf(span, body, most);
    double weight = 0.0;
    for (const Member& member : reference)
        weight += member.weight;
    for (const Member& member : reference)
        samples = Less(samples, SamplesOf(span, member.body, most), member.weight / weight);
    if (!turning) return samples;
    const std::vector<Sample> pair =
        Less(SamplesOf(span, turning->second, most), SamplesOf(span, turning->first, most), 1.0);
    return Turned(samples, pair, turning->axis);
}
