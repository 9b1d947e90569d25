#include "Displays/Projection/OrbitForecast.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Model/Systems/Body.h"

OrbitForecast::OrbitForecast(const std::vector<Body*>& bodies) {
    orbits_.reserve(bodies.size());
    for (std::size_t i = 0; i < bodies.size(); i++) {
        const Body& body = *bodies[i];
        Orbit& orbit = orbits_.emplace_back();
        orbit.position = body.Position();
        if (i >= static_cast<std::size_t>(kMaxBodies)) continue;
        double narrowest = 0.0;  // its inverse, 1/m
        for (std::size_t j = 0; j < i && bodies[j]->M() > 0.0; j++) {
            const RelativeState apart{body.Position() - bodies[j]->Position(),
                                      body.Velocity() - bodies[j]->Velocity()};
            const double gm = body.M() + bodies[j]->M();
            const double narrow = InverseSemiMajorAxis(apart, gm);
            if (!(narrow > narrowest)) continue;
            const OrbitalElements elements = ElementsOf(apart, gm);
            if (!std::isfinite(elements.timeSincePeriapsis)) continue;
            narrowest = narrow;
            orbit.primary = static_cast<int32>(j);
            orbit.elements = elements;
        }
    }
}

double OrbitForecast::PeriodOf(int32 body) const {
    const Orbit& orbit = At(body);
    return orbit.primary < 0 ? std::numeric_limits<double>::infinity() : orbit.elements.Period();
}

// A primary is heavier: this ends.
ThreeVector OrbitForecast::PlaceOf(int32 body, double after) const {
    const Orbit& orbit = At(body);
    if (orbit.primary < 0) return orbit.position;
    OrbitalElements then = orbit.elements;
    then.timeSincePeriapsis += after;
    const ThreeVector way = StateOf(then).position;
    const ThreeVector place = PlaceOf(orbit.primary, after) + way;
    return IsFinite(place) ? place : orbit.position;
}
