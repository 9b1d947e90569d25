#include "Displays/Space/OrbitCurves.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "Model/Systems/OrbitalElements.h"

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr int32 kDashes = 60;
constexpr double kMinEccentricity = 1e-3;

struct Bound {
    const SpaceBody* about;
    OrbitalElements elements;
};

// About the heavier body that it is bound to most narrowly.
std::optional<Bound> FindOrbit(const std::vector<SpaceBody>& bodies, std::size_t index) {
    const SpaceBody& body = bodies[index];
    std::optional<Bound> found;
    double narrowest = 0.0;  // its inverse, 1/m
    for (std::size_t i = 0; i < index && bodies[i].gm > 0.0; i++) {
        const RelativeState apart{body.position - bodies[i].position,
                                  body.velocity - bodies[i].velocity};
        const double gm = body.gm + bodies[i].gm;
        const double narrow = InverseSemiMajorAxis(apart, gm);
        if (!(narrow > narrowest)) continue;
        const OrbitalElements elements = ElementsOf(apart, gm);
        if (!std::isfinite(elements.timeSincePeriapsis) || !(elements.eccentricity < 1.0)) continue;
        narrowest = narrow;
        found = {&bodies[i], elements};
    }
    return found;
}

// At equal steps of the eccentric anomaly, where the curve bends alike.
std::vector<Sample> DashesOf(const Bound& orbit) {
    std::vector<Sample> samples;
    const double e = orbit.elements.eccentricity;
    const double motion = orbit.elements.MeanMotion();
    OrbitalElements at = orbit.elements;
    for (int32 i = 0; i <= 2 * kDashes; i++) {
        const double anomaly = kTurn * i / (2 * kDashes);
        at.timeSincePeriapsis = (anomaly - e * std::sin(anomaly)) / motion;
        const RelativeState state = StateOf(at);
        const ThreeVector place = orbit.about->position + state.position;
        if (!IsFinite(place) || !IsFinite(state.velocity)) return {};
        samples.push_back({at.timeSincePeriapsis, place, state.velocity, i % 2 == 1});
    }
    return samples;
}

}  // namespace

std::vector<OrbitCurve> OrbitCurves(const std::vector<SpaceBody>& bodies) {
    std::vector<OrbitCurve> curves;
    const std::size_t count = std::min(bodies.size(), kMaxOrbits);
    for (std::size_t i = 1; i < count; i++) {
        const std::optional<Bound> orbit = FindOrbit(bodies, i);
        if (!orbit) continue;
        OrbitCurve curve{static_cast<int32>(i), DashesOf(*orbit), {}, false};
        if (curve.dashes.empty()) continue;
        curve.periapsis = curve.dashes.front().position;
        curve.hasPeriapsis = orbit->elements.eccentricity > kMinEccentricity;
        curves.push_back(std::move(curve));
    }
    return curves;
}

std::vector<ThreeVector> Accelerations(const std::vector<SpaceBody>& bodies) {
    std::vector<ThreeVector> result(bodies.size());
    for (std::size_t i = 0; i < bodies.size(); i++)
        for (std::size_t j = 0; j < bodies.size() && bodies[j].gm > 0.0; j++) {
            const ThreeVector way = bodies[j].position - bodies[i].position;
            const double away = Length(way);
            if (i == j || !(away > 0.0) || !std::isfinite(away)) continue;
            const ThreeVector pull = (bodies[j].gm / away / away / away) * way;
            if (IsFinite(pull)) result[i] += pull;
        }
    return result;
}
