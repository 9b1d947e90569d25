#include "Displays/Hands/HandSystem.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "Displays/Projection/BodyLabels.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/OrbitalElements.h"

namespace {

// A sphere of influence is as large, of the distance, as this power of the masses' ratio (Laplace).
constexpr double kInfluence = 0.4;

}  // namespace

bool HandSystem::HasSameBodies(const HandSystem& other) const {
    const auto isSame = [](const HandBody& a, const HandBody& b) { return a.id == b.id; };
    return std::equal(bodies.begin(), bodies.end(), other.bodies.begin(), other.bodies.end(),
                      isSame);
}

int32 HandSystem::IndexOf(int64 id) const {
    for (std::size_t i = 0; i < bodies.size(); i++)
        if (bodies[i].id == id) return static_cast<int32>(i);
    return -1;
}

const HandBody* HandSystem::NeighbourOf(const ThreeVector& place, int64 but) const {
    const HandBody* heaviest = nullptr;
    const HandBody* found = nullptr;
    double least = std::numeric_limits<double>::infinity();
    for (const HandBody& body : bodies) {
        if (body.id == but || !(body.gm > 0.0)) continue;
        if (heaviest == nullptr) {
            heaviest = found = &body;
            continue;
        }
        const double reach = Length(body.position - heaviest->position) *
                             std::pow(body.gm / heaviest->gm, kInfluence);
        if (!(Length(place - body.position) < reach) || !(reach < least)) continue;
        found = &body;
        least = reach;
    }
    return found;
}

ThreeVector HandSystem::CircularVelocity(const HandBody& body) const {
    const HandBody* const neighbour = NeighbourOf(body.position, body.id);
    if (neighbour == nullptr) return body.velocity;
    const ThreeVector outward = body.position - neighbour->position;
    const double distance = Length(outward);
    if (!(distance > 0.0) || !std::isfinite(distance)) return body.velocity;
    const ThreeVector unit = (1.0 / distance) * outward;
    const ThreeVector own = body.velocity - neighbour->velocity;
    ThreeVector along = own - Dot(own, unit) * unit;
    // What falls straight down goes round as planets do.
    if (!(Length(along) > 0.0)) along = Cross(ThreeVector{0.0, 0.0, 1.0}, unit);
    if (!(Length(along) > 0.0)) along = Cross(ThreeVector{1.0, 0.0, 0.0}, unit);
    const double speed = std::sqrt((neighbour->gm + body.gm) / distance);
    return neighbour->velocity + (speed / Length(along)) * along;
}

double HandSystem::PeriodOf(const HandBody& body) const {
    const HandBody* const neighbour = NeighbourOf(body.position, body.id);
    if (neighbour == nullptr) return 0.0;
    const RelativeState apart{body.position - neighbour->position,
                              body.velocity - neighbour->velocity};
    const double gm = neighbour->gm + body.gm;
    const double narrow = InverseSemiMajorAxis(apart, gm);
    const double size = narrow > 0.0 ? 1.0 / narrow : Length(apart.position);
    const double period = 2.0 * std::numbers::pi * std::sqrt(size * size * size / gm);
    return std::isfinite(period) ? period : 0.0;
}

HandSystem ReadHandSystem(const AbEpoch& epoch, const std::vector<Body*>& bodies, int64 followed) {
    HandSystem system;
    system.epoch = &epoch;
    system.bodies.reserve(bodies.size());
    for (const Body* const body : bodies)
        system.bodies.push_back({body->ID(), body->M(), body->Radius(), body->Position(),
                                 body->Velocity(), body->PositionUval(), body->SpeedUval()});
    system.reference = ReadMembers(epoch, bodies, followed);
    double weight = 0.0;
    for (const TrajectoryCache::Member& member : system.reference) {
        const HandBody& body = system.bodies[static_cast<std::size_t>(member.body)];
        system.origin += member.weight * body.position;
        system.drift += member.weight * body.velocity;
        weight += member.weight;
    }
    if (weight > 0.0) {
        system.origin *= 1.0 / weight;
        system.drift *= 1.0 / weight;
    }
    return system;
}
