#include "Displays/Space/SpaceTrails.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace {

// Trails are taken so often, and take so much of the time at the most.
constexpr bigtime_t kAnew = 60'000;
constexpr bigtime_t kShare = 4;

}  // namespace

void SpaceTrails::ModelChanged(const AbEpoch* run, std::vector<TrailSource::Member> reference) {
    source_.run = run;
    source_.reference = std::move(reference);
    parts_.reset();
}

void SpaceTrails::Update(EpochPortal* portal, SpaceScene* scene) {
    if (source_.history == nullptr) return;
    const bigtime_t start = system_time();
    if (parts_ && start < due_) return Lengthen(scene);
    if (!parts_) parts_ = source_.FindParts(portal);
    source_.now = scene->time;
    scene->trails = source_.Take(*parts_);
    scene->FindWholeTrails();
    std::unordered_map<int64, int32> places;
    for (std::size_t i = 0; i < scene->bodies.size(); i++)
        places.emplace(scene->bodies[i].id, static_cast<int32>(i));
    bodies_.clear();
    for (const KeptTrails::Trail& trail : scene->trails) {
        // The newest trail of a body is the first one.
        const auto found = places.find(trail.body);
        bodies_.push_back(found == places.end() || trail.samples.empty() ? -1 : found->second);
        if (found != places.end()) places.erase(found);
    }
    isLengthened_ = false;
    const bigtime_t end = system_time();
    due_ = end + std::max(kAnew, kShare * (end - start));
    Lengthen(scene);
}

void SpaceTrails::Lengthen(SpaceScene* scene) {
    for (std::size_t i = 0; i < bodies_.size(); i++) {
        if (bodies_[i] < 0) continue;
        const SpaceBody& body = scene->bodies[static_cast<std::size_t>(bodies_[i])];
        std::vector<Sample>& samples = scene->trails[i].samples;
        if (isLengthened_) samples.pop_back();
        samples.push_back({scene->time, body.position, body.velocity, true});
    }
    isLengthened_ = true;
}
