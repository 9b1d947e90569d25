#include "Displays/Comparison/Separation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

namespace {

// Of the time in which the closest pair would fall together. The method is of fourth order: what a
// step misses is less than the last digit.
constexpr double kStep = 3e-4;

using Vectors = std::vector<ThreeVector>;

// A sum of many small parts, and what its last digits have lost.
struct Sums {
    Vectors values;
    Vectors lost;

    void Add(std::size_t i, const ThreeVector& part) {
        const ThreeVector rest = part - lost[i];
        const ThreeVector sum = values[i] + rest;
        lost[i] = (sum - values[i]) - rest;
        values[i] = sum;
    }
};

struct Motion {
    Sums places;
    Sums velocities;
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
    const Vectors& x = motion->places.values;
    const Vectors& v = motion->velocities.values;
    const Vectors a1 = AccelerationsAt(x, gm);
    const Vectors v2 = Sum(v, a1, step / 2.0);
    const Vectors a2 = AccelerationsAt(Sum(x, v, step / 2.0), gm);
    const Vectors v3 = Sum(v, a2, step / 2.0);
    const Vectors a3 = AccelerationsAt(Sum(x, v2, step / 2.0), gm);
    const Vectors v4 = Sum(v, a3, step);
    const Vectors a4 = AccelerationsAt(Sum(x, v3, step), gm);
    for (std::size_t i = 0; i < x.size(); i++) {
        motion->places.Add(i, (v[i] + (v2[i] + v3[i]) * 2.0 + v4[i]) * (step / 6.0));
        motion->velocities.Add(i, (a1[i] + (a2[i] + a3[i]) * 2.0 + a4[i]) * (step / 6.0));
    }
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

// To another time. False: that would take more evaluations of a pair.
bool Carry(double to, double mostPairs, SystemState* state) {
    const double way = to - state->time;
    if (way == 0.0) return true;
    const std::size_t count = state->CountBodies();
    const double pairs = static_cast<double>(count) * static_cast<double>(state->CountMassive());
    if (!(5.0 * pairs <= mostPairs)) return false;
    Motion motion;
    for (std::size_t i = 0; i < count; i++) {
        motion.places.values.push_back(state->Position(i));
        motion.velocities.values.push_back(state->Velocity(i));
    }
    motion.places.lost.resize(count);
    motion.velocities.lost.resize(count);
    const double shortest = ShortestTime(motion.places.values, state->gm);
    const double steps = std::max(1.0, std::ceil(std::abs(way) / (kStep * shortest)));
    if (!(4.0 * steps * pairs <= mostPairs)) return false;
    for (int64 done = 0; done < static_cast<int64>(steps); done++)
        Advance(&motion, state->gm, way / steps);
    state->positions.clear();
    for (const ThreeVector& place : motion.places.values)
        state->positions.insert(state->positions.end(), {place.x, place.y, place.z});
    return true;
}

}  // namespace

std::optional<Separation> LargestSeparation(SystemState state, const BodyPlaces& places,
                                            double mostPairs) {
    if (!Carry(places.time, mostPairs, &state)) return std::nullopt;
    std::unordered_map<int64, std::size_t> indices;
    for (std::size_t i = 0; i < state.CountBodies(); i++)
        indices.emplace(state.ids[i], i);
    std::optional<Separation> largest;
    for (std::size_t i = 0; i < places.ids.size(); i++) {
        const auto found = indices.find(places.ids[i]);
        if (found == indices.end()) continue;
        const double distance = LengthOf(places.places[i] - state.Position(found->second));
        if (!largest || distance > largest->distance) largest = {distance, places.ids[i]};
    }
    return largest;
}
