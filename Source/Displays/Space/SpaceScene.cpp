#include "Displays/Space/SpaceScene.h"

#include <algorithm>
#include <numeric>

#include "Displays/Space/OrbitCurves.h"
#include "Model/Systems/Body.h"

namespace {

// What has less than 0.075 of the Sun's mass burns no hydrogen (Kumar 1963).
constexpr double kMinStar = 0.075 * 1.32712440018e20;  // m3/s2

}  // namespace

bool SpaceBody::IsStar() const {
    return gm >= kMinStar;
}

void SpaceScene::TakeBodies(const std::vector<Body*>& from) {
    bodies.clear();
    bodies.reserve(from.size());
    for (const Body* const body : from)
        bodies.push_back({body->ID(), body->Name(), body->Position(), body->Velocity(), body->M(),
                          body->Radius(), body->DiscColor(), body->TrailColor(), body->DiscOn()});
}

void SpaceScene::FindWholeTrails() {
    whole.clear();
    for (const KeptTrails::Trail& trail : trails)
        whole.push_back(!trail.samples.empty() &&
                        std::all_of(trail.samples.begin() + 1, trail.samples.end(),
                                    [](const Sample& sample) { return sample.isJoined; }));
}

std::vector<ThreeVector> SpaceScene::Places() const {
    std::vector<ThreeVector> places;
    for (const SpaceBody& body : bodies)
        places.push_back(body.position);
    for (const KeptTrails::Trail& trail : trails)
        for (std::size_t i = 0; i < trail.samples.size(); i++) {
            const Sample& sample = trail.samples[i];
            places.push_back(sample.position);
            if (!sample.isJoined || i == 0) continue;
            const double middle = std::midpoint(trail.samples[i - 1].time, sample.time);
            places.push_back(Between(trail.samples[i - 1], sample, middle).position);
        }
    for (const OrbitCurve& orbit : OrbitCurves(bodies))
        for (const Sample& sample : orbit.dashes)
            places.push_back(sample.position);
    return places;
}
