#include "Simulation/Document/Conservation.h"

#include <algorithm>
#include <cmath>

#include "Simulation/Document/SystemState.h"

namespace {

// Neumaier's compensated sum: the error stays at that of one rounding.
class Sum {
public:
    void Add(double term) {
        const double sum = sum_ + term;
        rest_ += std::fabs(sum_) >= std::fabs(term) ? (sum_ - sum) + term : (term - sum) + sum_;
        sum_ = sum;
    }
    [[nodiscard]] double Value() const { return sum_ + rest_; }

private:
    double sum_ = 0.0;
    double rest_ = 0.0;
};

class VectorSum {
public:
    void Add(double weight, const ThreeVector& v) {
        x_.Add(weight * v.x);
        y_.Add(weight * v.y);
        z_.Add(weight * v.z);
        scale_.Add(weight * std::hypot(v.x, v.y, v.z));
    }
    [[nodiscard]] ThreeVector Value() const { return {x_.Value(), y_.Value(), z_.Value()}; }
    [[nodiscard]] double Scale() const { return scale_.Value(); }

private:
    Sum x_, y_, z_, scale_;
};

ThreeVector At(const std::vector<double>& triples, std::size_t i) {
    return {triples[3 * i], triples[3 * i + 1], triples[3 * i + 2]};
}

// sum of mu_j / r_ij over j < i.
double PotentialOfEarlier(const SystemState& state, std::size_t i) {
    const ThreeVector at = At(state.positions, i);
    double sum = 0.0;
    for (std::size_t j = 0; j < i; j++) {
        const double dx = state.positions[3 * j] - at.x;
        const double dy = state.positions[3 * j + 1] - at.y;
        const double dz = state.positions[3 * j + 2] - at.z;
        sum += state.gm[j] / std::sqrt(dx * dx + dy * dy + dz * dz);
    }
    return sum;
}

std::optional<double> Ratio(double change, double scale) {
    const double ratio = change / scale;
    return std::isfinite(ratio) ? std::optional(ratio) : std::nullopt;
}

double Distance(const ThreeVector& a, const ThreeVector& b) {
    return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

}  // namespace

Conserved MeasureConserved(const SystemState& state) {
    Sum energy;
    VectorSum momentum;
    VectorSum angularMomentum;
    for (std::size_t i = 0; i < state.CountMassive(); i++) {
        const ThreeVector r = At(state.positions, i);
        const ThreeVector v = At(state.velocities, i);
        const double gm = state.gm[i];
        energy.Add(0.5 * gm * Dot(v, v));
        energy.Add(-gm * PotentialOfEarlier(state, i));
        momentum.Add(gm, v);
        angularMomentum.Add(gm, Cross(r, v));
    }
    return {energy.Value(), momentum.Value(), angularMomentum.Value(), momentum.Scale(),
            angularMomentum.Scale()};
}

void MergerTotals::Add(const MergeResult& result) {
    count += static_cast<int64>(result.mergers.size());
    for (const Merger& merger : result.mergers)
        kineticEnergyLoss += merger.kineticEnergyLoss;
    energyChange += result.energyChange;
    angularMomentumChange += result.angularMomentumChange;
}

Drift MeasureDrift(const Conserved& start, const Conserved& end, const MergerTotals& mergers) {
    const double energy = start.energy + mergers.energyChange;
    const ThreeVector angularMomentum = start.angularMomentum + mergers.angularMomentumChange;
    return {Ratio(end.energy - energy, std::fabs(start.energy)),
            Ratio(Distance(end.momentum, start.momentum),
                  std::max(start.momentumScale, end.momentumScale)),
            Ratio(Distance(end.angularMomentum, angularMomentum),
                  std::max(start.angularMomentumScale, end.angularMomentumScale))};
}
