#include "Model/Systems/ShortestOrbit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "Model/Systems/Body.h"

namespace {

constexpr double kSecondsPerOrbit = 4.0;
// Pairs that are looked at: a few milliseconds.
constexpr std::size_t kMaxPairs = 1'000'000;
constexpr double kDigits = 2.0;  // of a rounded pace
constexpr double kNever = std::numeric_limits<double>::infinity();

double Squared(const ThreeVector& v) {
    return v.x * v.x + v.y * v.y + v.z * v.z;
}

// 1 / a of the pair's ellipse in units of GM: 2 / r - v^2 / GM is negative of what flies apart.
double Period(const Body& one, const Body& other) {
    const double gm = one.M() + other.M();
    const double distance = std::sqrt(Squared(one.Position() - other.Position()));
    const double perAxis = 2.0 / distance - Squared(one.Velocity() - other.Velocity()) / gm;
    if (!(perAxis > 0.0) || !(distance > 0.0)) return kNever;
    return 2.0 * std::numbers::pi / (perAxis * std::sqrt(perAxis * gm));
}

double RoundToDigits(double value) {
    if (!std::isfinite(value) || value <= 0.0) return value;
    const double unit = std::pow(10.0, std::floor(std::log10(value)) + 1.0 - kDigits);
    return std::round(value / unit) * unit;
}

}  // namespace

double ShortestOrbit(const std::vector<Body*>& bodies) {
    std::vector<const Body*> heavy(bodies.begin(), bodies.end());
    std::erase_if(heavy, [](const Body* body) { return !(body->M() > 0.0); });
    std::stable_sort(heavy.begin(), heavy.end(),
                     [](const Body* a, const Body* b) { return a->M() > b->M(); });
    const std::size_t most = std::max<std::size_t>(kMaxPairs / (bodies.size() + 1), 1);
    if (heavy.size() > most) heavy.resize(most);
    double shortest = kNever;
    for (const Body* const center : heavy)
        for (const Body* const body : bodies)
            if (body != center && body->M() <= center->M())
                shortest = std::min(shortest, Period(*center, *body));
    return shortest;
}

double AutoPace(const std::vector<Body*>& bodies) {
    return RoundToDigits(ShortestOrbit(bodies) / kSecondsPerOrbit);
}
