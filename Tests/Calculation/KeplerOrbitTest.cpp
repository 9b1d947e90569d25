// Two bodies, whose motion is known.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Body.h"
#include "Epoch.h"
#include "TaylorFixtures.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// Relative motion of two bodies after a time from pericentre, by Kepler's equation.
class KeplerOrbit {
public:
    KeplerOrbit(double gm, double axis, double eccentricity)
        : axis_(axis), e_(eccentricity), n_(std::sqrt(gm / (axis * axis * axis))) {}

    double Period() const { return 2 * kPi / n_; }
    ThreeVector Position(double time) const {
        const double anomaly = EccentricAnomaly(time);
        return {axis_ * (std::cos(anomaly) - e_),
                axis_ * std::sqrt(1 - e_ * e_) * std::sin(anomaly), 0};
    }
    ThreeVector Velocity(double time) const {
        const double anomaly = EccentricAnomaly(time);
        const double rate = n_ / (1 - e_ * std::cos(anomaly));
        return {-axis_ * rate * std::sin(anomaly),
                axis_ * rate * std::sqrt(1 - e_ * e_) * std::cos(anomaly), 0};
    }

private:
    double EccentricAnomaly(double time) const {
        const double mean = n_ * time;
        double anomaly = mean;
        for (int i = 0; i < 50; i++)
            anomaly -= (anomaly - e_ * std::sin(anomaly) - mean) / (1 - e_ * std::cos(anomaly));
        return anomaly;
    }

    const double axis_, e_, n_;
};

struct KeplerErrors {
    double position;  // relative, after one period
    double energy;    // relative, the greatest of many during it
    double period;    // relative
};

KeplerErrors IntegrateKepler(double cutoff) {
    constexpr double kGM1 = 1.0e20, kGM2 = 0.3e20, kAxis = 1.5e11, kEccentricity = 0.4;
    const KeplerOrbit orbit(kGM1 + kGM2, kAxis, kEccentricity);
    TestSystem system(4, cutoff);
    const ThreeVector r = orbit.Position(0), v = orbit.Velocity(0);
    const double share1 = kGM2 / (kGM1 + kGM2), share2 = kGM1 / (kGM1 + kGM2);
    Body* const a = system.Add(0, kGM1, -share1 * r, -share1 * v);
    Body* const b = system.Add(1, kGM2, share2 * r, share2 * v);
    const auto calculator = MakeCalculator(&system);

    const double energy = -(kGM1 + kGM2) / (2 * kAxis);
    KeplerErrors errors{};
    ThreeVector d;
    for (int part = 1; part <= 16; part++) {
        calculator->SetRunLimit(0, orbit.Period() * part / 16);
        system.RunUntilParked(calculator.get());
        d = b->Position() - a->Position();
        const double speed = Length(b->Velocity() - a->Velocity());
        const double found = speed * speed / 2 - (kGM1 + kGM2) / Length(d);
        errors.energy = std::max(errors.energy, std::fabs(found / energy - 1));
    }
    const double time = system.GetEpoch()->Time();
    errors.position = Length(d - orbit.Position(time)) / kAxis;
    // How long after the end of the period the bodies are where they were at its beginning.
    const double late = time - d.y / Length(b->Velocity() - a->Velocity());
    errors.period = std::fabs(late / orbit.Period() - 1);
    return errors;
}

}  // namespace

TEST(TaylorCalculator, TwoBodiesFollowKeplerAsWellAsTheCutoffAllows) {
    KeplerErrors former = {1, 1, 1};
    for (double cutoff : {1e-5, 1e-7, 1e-9, 1e-11}) {
        SCOPED_TRACE(cutoff);
        const KeplerErrors errors = IntegrateKepler(cutoff);
        // The velocity's first neglected term is of fourth order in the step, so the error of a
        // whole orbit is of third order: it goes with the cutoff itself.
        EXPECT_LT(errors.position, former.position / 50);
        EXPECT_LT(errors.energy, former.energy / 50);
        EXPECT_LT(errors.period, former.period / 50);
        EXPECT_LT(errors.position, 10 * cutoff);
        EXPECT_LT(errors.energy, 5 * cutoff);
        former = errors;
    }
}
