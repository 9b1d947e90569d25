#include "Displays/Projection/OrbitPlaces.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unordered_map>

namespace {

constexpr int32 kPlacesOfOrbit = 96;

// The frame as it will be. What is followed moves as its heaviest body does.
FrameMoment FrameAfter(const TrajectoryCache& cache, const OrbitForecast& forecast, double after) {
    const auto moved = [&](int32 body) {
        return forecast.PlaceOf(body, after) - forecast.PlaceOf(body, 0.0);
    };
    FrameMoment frame = cache.LastFrame();
    if (const auto& reference = cache.Reference(); !reference.empty())
        frame.origin += moved(reference.front().body);
    if (const auto& turning = cache.GetTurning(); turning)
        frame.axes = TurningAxes::Of(
            forecast.PlaceOf(turning->second, after) - forecast.PlaceOf(turning->first, after),
            turning->axis);
    return frame;
}

void AddTrail(const std::vector<Sample>& samples, std::vector<ThreeVector>* places) {
    for (std::size_t i = 0; i < samples.size(); i++) {
        places->push_back(samples[i].position);
        if (i == 0 || !samples[i].isJoined) continue;
        const double middle = std::midpoint(samples[i - 1].time, samples[i].time);
        places->push_back(Between(samples[i - 1], samples[i], middle).position);
    }
}

}  // namespace

std::vector<ThreeVector> OrbitPlaces(const TrajectoryCache& cache, const BodyLabels& labels,
                                     const OrbitForecast& forecast,
                                     const std::vector<KeptTrails::Trail>& trails) {
    std::vector<ThreeVector> places;
    std::unordered_map<int64, double> covered;  // s
    for (const KeptTrails::Trail& trail : trails) {
        if (trail.samples.empty()) continue;
        AddTrail(trail.samples, &places);
        covered[trail.body] += trail.samples.back().time - trail.samples.front().time;
    }
    const FrameMoment now = cache.LastFrame();
    double longest = 0.0;
    const auto consider = [&](int32 body) {
        if (const double period = forecast.PeriodOf(body); std::isfinite(period))
            longest = std::max(longest, period);
    };
    if (!cache.Reference().empty()) consider(cache.Reference().front().body);
    if (cache.GetTurning()) consider(cache.GetTurning()->second);
    const auto count = std::min(cache.CountBodies(), static_cast<int32>(labels.bodies.size()));
    for (int32 body = 0; body < count; body++) {
        places.push_back(now.See(cache.LastPosition(body)));
        const double own = forecast.PeriodOf(body);
        const double period = std::max(longest, std::isfinite(own) ? own : 0.0);
        if (!(period > 0.0) || covered[labels.bodies[static_cast<std::size_t>(body)].id] >= period)
            continue;
        for (int32 i = 1; i < kPlacesOfOrbit; i++) {
            const double after = period * i / kPlacesOfOrbit;
            places.push_back(FrameAfter(cache, forecast, after).See(forecast.PlaceOf(body, after)));
        }
    }
    return places;
}
