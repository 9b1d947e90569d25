// Two bodies, whose motion is known.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Tests/Calculation/TaylorFixtures.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kGM1 = 1.0e20, kGM2 = 0.3e20, kGM = kGM1 + kGM2;
constexpr double kAxis = 1.5e11, kEccentricity = 0.4;

double MeanMotion() {
    return std::sqrt(kGM / (kAxis * kAxis * kAxis));
}

// Relative position of the bodies after a time from pericentre, by Kepler's equation.
ThreeVector PositionAt(double time) {
    const double mean = MeanMotion() * time;
    double anomaly = mean;
    for (int i = 0; i < 50; i++)
        anomaly -= (anomaly - kEccentricity * std::sin(anomaly) - mean) /
                   (1 - kEccentricity * std::cos(anomaly));
    return {kAxis * (std::cos(anomaly) - kEccentricity),
            kAxis * std::sqrt(1 - kEccentricity * kEccentricity) * std::sin(anomaly), 0};
}

struct KeplerErrors {
    double position;  // relative, after one period
    double energy;    // relative, the greatest of many during it
};

KeplerErrors IntegrateKepler(double cutoff) {
    TestSystem system(4, cutoff);
    const ThreeVector r = PositionAt(0);
    const ThreeVector v = {
        0, MeanMotion() * kAxis * std::sqrt((1 + kEccentricity) / (1 - kEccentricity)), 0};
    Body* const a = system.Add(0, kGM1, -kGM2 / kGM * r, -kGM2 / kGM * v);
    Body* const b = system.Add(1, kGM2, kGM1 / kGM * r, kGM1 / kGM * v);
    const auto calculator = MakeCalculator(&system);

    const double energy = -kGM / (2 * kAxis);
    KeplerErrors errors{};
    ThreeVector d;
    for (int part = 1; part <= 16; part++) {
        calculator->SetRunLimit(0, 2 * kPi / MeanMotion() * part / 16);
        system.RunUntilParked(calculator.get());
        d = b->Position() - a->Position();
        const double speed = Length(b->Velocity() - a->Velocity());
        const double found = speed * speed / 2 - kGM / Length(d);
        errors.energy = std::max(errors.energy, std::fabs(found / energy - 1));
    }
    errors.position = Length(d - PositionAt(system.GetEpoch()->Time())) / kAxis;
    return errors;
}

}  // namespace

TEST(TaylorCalculator, TwoBodiesFollowKeplerAsWellAsTheCutoffAllows) {
    KeplerErrors former = {1, 1};
    for (double cutoff : {1e-5, 1e-7, 1e-9, 1e-11}) {
        SCOPED_TRACE(cutoff);
        const KeplerErrors errors = IntegrateKepler(cutoff);
        // The velocity's first neglected term is of fourth order in the step, so the error of a
        // whole orbit is of third order: it goes with the cutoff itself.
        EXPECT_LT(errors.position, former.position / 50);
        EXPECT_LT(errors.energy, former.energy / 50);
        EXPECT_LT(errors.position, 10 * cutoff);
        EXPECT_LT(errors.energy, 5 * cutoff);
        former = errors;
    }
}
