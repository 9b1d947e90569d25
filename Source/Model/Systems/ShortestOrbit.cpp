#include "Model/Systems/ShortestOrbit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "Model/Systems/Body.h"
#include "Model/Systems/OrbitalElements.h"

namespace {

constexpr double kSecondsPerOrbit = 4.0;
// Pairs that are looked at: a few milliseconds.
constexpr std::size_t kMaxPairs = 1'000'000;
constexpr double kDigits = 2.0;  // of a rounded pace
constexpr double kNever = std::numeric_limits<double>::infinity();

double Period(const Body& one, const Body& other) {
    const double gm = one.M() + other.M();
    const RelativeState apart{one.Position() - other.Position(), one.Velocity() - other.Velocity()};
    const double perAxis = InverseSemiMajorAxis(apart, gm);
    if (!(perAxis > 0.0) || !(Length(apart.position) > 0.0)) return kNever;
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
