#include "Displays/Comparison/Separation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

namespace {

// Of the time in which the closest pair would fall together. The method is of fourth order: what a
// step misses is less than the last digit.
constexpr double kStep = 1e-3;

using Vectors = std::vector<ThreeVector>;

struct Motion {
    Vectors places;
    Vectors velocities;
};

double LengthOf(const ThreeVector& way) {
    return std::sqrt(Dot(way, way));
}

Vectors AccelerationsAt(const Vectors& places, const std::vector<double>& gm) {
    Vectors accelerations(places.size());
    for (std::size_t j = 0; j < places.size() && gm[j] > 0.0; j++)
        for (std::size_t i = 0; i < places.size(); i++) {
            if (i == j) continue;
            const ThreeVector way = places[j] - places[i];
            const double square = Dot(way, way);
            if (square > 0.0) accelerations[i] += way * (gm[j] / (square * std::sqrt(square)));
        }
    return accelerations;
}

Vectors Sum(Vectors a, const Vectors& b, double factor) {
    for (std::size_t i = 0; i < a.size(); i++)
        a[i] += b[i] * factor;
    return a;
}

// One step of Runge and Kutta's method.
void Advance(Motion* motion, const std::vector<double>& gm, double step) {
    const auto& [x, v] = *motion;
    const Vectors a1 = AccelerationsAt(x, gm);
    const Vectors v2 = Sum(v, a1, step / 2.0);
    const Vectors a2 = AccelerationsAt(Sum(x, v, step / 2.0), gm);
    const Vectors v3 = Sum(v, a2, step / 2.0);
    const Vectors a3 = AccelerationsAt(Sum(x, v2, step / 2.0), gm);
    const Vectors v4 = Sum(v, a3, step);
    const Vectors a4 = AccelerationsAt(Sum(x, v3, step), gm);
    const auto mean = [step](Vectors from, const Vectors& k1, const Vectors& k2, const Vectors& k3,
                             const Vectors& k4) {
        for (std::size_t i = 0; i < from.size(); i++)
            from[i] += (k1[i] + (k2[i] + k3[i]) * 2.0 + k4[i]) * (step / 6.0);
        return from;
    };
    *motion = {mean(x, v, v2, v3, v4), mean(v, a1, a2, a3, a4)};
}

double ShortestTime(const Vectors& places, const std::vector<double>& gm) {
    double shortest = std::numeric_limits<double>::infinity();
    for (std::size_t j = 0; j < places.size() && gm[j] > 0.0; j++)
        for (std::size_t i = j + 1; i < places.size(); i++) {
            const double apart = LengthOf(places[i] - places[j]);
            shortest = std::min(shortest, std::sqrt(apart * apart * apart / (gm[i] + gm[j])));
        }
    return shortest;
}

}  // namespace

std::optional<Separation> LargestSeparation(SystemState state, const BodyPlaces& places,
                                            double mostPairs) {
    const std::size_t count = state.CountBodies();
    const double pairs = static_cast<double>(count) * static_cast<double>(state.CountMassive());
    const double way = places.time - state.time;
    Motion motion;
    for (std::size_t i = 0; i < count; i++) {
        motion.places.push_back(state.Position(i));
        motion.velocities.push_back(state.Velocity(i));
    }
    if (way != 0.0) {
        if (!(5.0 * pairs <= mostPairs)) return std::nullopt;
        const double steps = std::max(
            1.0, std::ceil(std::abs(way) / (kStep * ShortestTime(motion.places, state.gm))));
        if (!(4.0 * steps * pairs <= mostPairs)) return std::nullopt;
        for (double done = 0.0; done < steps; done++)
            Advance(&motion, state.gm, way / steps);
    }
    std::unordered_map<int64, std::size_t> indices;
    for (std::size_t i = 0; i < count; i++)
        indices.emplace(state.ids[i], i);
    std::optional<Separation> largest;
    for (std::size_t i = 0; i < places.ids.size(); i++) {
        const auto found = indices.find(places.ids[i]);
        if (found == indices.end()) continue;
        const double distance = LengthOf(places.places[i] - motion.places[found->second]);
        if (!largest || distance > largest->distance) largest = {distance, places.ids[i]};
    }
    return largest;
}
