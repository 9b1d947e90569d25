// How well a run has kept what gravity conserves: energy, momentum and angular momentum about the
// origin. No state, any thread. All sums are weighted with GM in place of the mass, which
// multiplies each quantity by the same constant and drops out of every ratio; massless bodies add
// nothing.
#pragma once

#include <optional>

#include "Model/Systems/ThreeVector.h"
#include "Simulation/Document/CollisionMerger.h"

struct SystemState;

struct Conserved {
    double energy = 0.0;                // m5/s4: sum(mu v2 / 2) - sum over pairs (mu_i mu_j / r)
    ThreeVector momentum;               // m4/s3: sum(mu v)
    ThreeVector angularMomentum;        // m5/s3: sum(mu r x v)
    double momentumScale = 0.0;         // m4/s3: sum(mu |v|)
    double angularMomentumScale = 0.0;  // m5/s3: sum(mu |r x v|)
};

// Goes over all pairs of massive bodies.
[[nodiscard]] Conserved MeasureConserved(const SystemState& state);

// Ratios of change; none where the denominator is zero or the ratio is not finite.
struct Drift {
    std::optional<double> energy;           // (end - start) / |start|
    std::optional<double> momentum;         // |end - start| / the larger momentumScale of both
    std::optional<double> angularMomentum;  // |end - start| / the larger angularMomentumScale
};

// What the mergers of a run have turned into heat and spin. It is booked apart, so that the drifts
// still tell how well the motion was computed.
struct MergerTotals {
    int64 count = 0;
    double kineticEnergyLoss = 0.0;     // m5/s4
    double energyChange = 0.0;          // m5/s4
    ThreeVector angularMomentumChange;  // m5/s3

    void Add(const MergeResult& result);
};

[[nodiscard]] Drift MeasureDrift(const Conserved& start, const Conserved& end,
                                 const MergerTotals& mergers = {});
