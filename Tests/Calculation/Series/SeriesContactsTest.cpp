// When bodies touch, within steps of any length.
#include "Calculation/Series/SeriesContacts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "Tests/Calculation/Series/SeriesFixtures.h"

namespace {

struct Found {
    double time;
    double theta;
    std::vector<CollidingPair> pairs;
};

class SeriesContactsTest : public testing::Test {
protected:
    SeriesContactsTest() { stop_.pauseCount = 0; }

    void Start(const PointSystem& system, const std::vector<double>& radii, double tolerance) {
        Load(system, &stepper_, 16);
        contacts_.Resize(stepper_.CountBodies(), stepper_.CountMassive());
        for (std::size_t i = 0; i < radii.size(); i++)
            contacts_.SetRadius(static_cast<int32>(i), radii[i]);
        stepper_.Start(tolerance, 0.0);
    }
    // Within so many steps.
    std::optional<Found> FirstContact(int32 steps) {
        for (int32 i = 0; i < steps; i++) {
            if (stepper_.MakeStep(stop_) != SeriesStepper::Result::kDone) break;
            if (contacts_.Find(stepper_.Store(), stepper_.Kernels(), stepper_.Step(), stop_) ==
                true)
                return Found{stepper_.Step().TimeAt(contacts_.Theta()), contacts_.Theta(),
                             contacts_.Pairs()};
        }
        return std::nullopt;
    }
    double DistanceAt(double theta, const CollidingPair& pair) {
        const ThreeVector d = stepper_.Step().BodyAt(pair.later, theta).position -
                              stepper_.Step().BodyAt(pair.earlier, theta).position;
        return std::hypot(d.x, d.y, d.z);
    }

    StopFlags stop_;
    SeriesStepper stepper_;
    SeriesContacts contacts_;
};

// A sun, and two light bodies far from it, the second of which flies at the first.
PointSystem Shot(double offset, double distance, double speed) {
    const ThreeVector target{kAstronomicalUnit, 0, 0};
    return {{{}, {}, kSolarGM},
            {target, {}, 1e-6},
            {target + ThreeVector{distance, offset, 0}, {-speed, 0, 0}, 1e-9}};
}

}  // namespace

TEST_F(SeriesContactsTest, NoBulletPassesThroughATarget) {
    for (const double tolerance : {1e-16, 1e-11, 1e-6})
        for (const double distance : {1e4, 1e7, 3e8}) {
            const double speed = 1e5;
            // The sun draws both alike.
            Start(Shot(3.0, distance, speed), {7e8, 10.0, 1.0}, tolerance);
            const auto hit = FirstContact(2000);
            ASSERT_TRUE(hit) << tolerance << ", " << distance;
            EXPECT_EQ(hit->pairs, (std::vector<CollidingPair>{{2, 1}}));
            const double expected = (distance - std::sqrt(11.0 * 11.0 - 3.0 * 3.0)) / speed;
            EXPECT_NEAR(hit->time, expected, 1e-2 * expected) << tolerance;
            // As near as coordinates tell.
            EXPECT_NEAR(DistanceAt(hit->theta, {2, 1}), 11.0, 1e-4);
            EXPECT_GT(DistanceAt(hit->theta - 1e-3 / stepper_.Step().Scale(), {2, 1}), 11.0);
        }
}

TEST_F(SeriesContactsTest, GrazingBodiesTouchOrDoNot) {
    for (const double offset : {10.9, 10.999, 11.001, 11.1}) {
        Start(Shot(offset, 1e4, 1e3), {7e8, 10.0, 1.0}, 1e-14);
        EXPECT_EQ(FirstContact(60).has_value(), offset < 11.0) << offset;
    }
}

TEST_F(SeriesContactsTest, FallingBodiesTouchAtTheirRadii) {
    // From rest at r the fall to x takes sqrt(r^3 / 2 GM) (acos(sqrt(x/r)) + sqrt(x/r (1 - x/r))).
    const double r = kAstronomicalUnit;
    const double radius = 1e7;
    for (const double tolerance : {1e-16, 1e-6}) {
        Start({{{}, {}, 0.7 * kSolarGM}, {{r, 0, 0}, {}, 0.3 * kSolarGM}}, {radius, radius},
              tolerance);
        const auto hit = FirstContact(10'000);
        ASSERT_TRUE(hit);
        const double share = 2 * radius / r;
        const double expected = std::sqrt(r * r * r / (2 * kSolarGM)) *
                                (std::acos(std::sqrt(share)) + std::sqrt(share * (1 - share)));
        EXPECT_NEAR(hit->time / expected, 1.0, tolerance < 1e-10 ? 1e-13 : 1e-5);
        EXPECT_NEAR(DistanceAt(hit->theta, {1, 0}) / (2 * radius), 1.0, 1e-12);
    }
}

TEST_F(SeriesContactsTest, ContactsAtOneTimeAreOneMessage) {
    // Two pairs mirror each other; a third body stands within another from the begin on.
    const PointBody sun{{}, {}, kSolarGM};
    const double x = 1e10;
    const PointSystem mirrored{sun, {{x, 0, 0}, {-1e5, 0, 0}, 1e3}, {{-x, 0, 0}, {1e5, 0, 0}, 1e3}};
    Start(mirrored, {1e9, 1e6, 1e6}, 1e-12);
    const auto both = FirstContact(1000);
    ASSERT_TRUE(both);
    EXPECT_EQ(both->pairs, (std::vector<CollidingPair>{{2, 0}, {1, 0}}));
    Start({sun, {{5e8, 0, 0}, {}, 1e3}, {{x, 0, 0}, {}, 1e3}}, {1e9, 1e6, 1e6}, 1e-12);
    const auto overlap = FirstContact(1);
    ASSERT_TRUE(overlap);
    EXPECT_EQ(overlap->theta, 0.0);
    EXPECT_EQ(overlap->pairs, (std::vector<CollidingPair>{{1, 0}}));
}

// From the corners of an even triangle three bodies fall at each other.
TEST_F(SeriesContactsTest, ThreeBodiesThatTouchAtOnceAreThreePairs) {
    const double half = std::sqrt(3.0) / 2;
    const double side = 1e10;
    Start({{{0, side, 0}, {}, 1e18},
           {{half * side, -side / 2, 0}, {}, 1e18},
           {{-half * side, -side / 2, 0}, {}, 1e18}},
          {1e8, 1e8, 1e8}, 1e-14);
    // So late that a clock's last place is longer than what roundings make of one moment.
    stepper_.Start(1e-14, 1e9);
    const auto all = FirstContact(10'000);
    ASSERT_TRUE(all);
    EXPECT_EQ(all->pairs, (std::vector<CollidingPair>{{2, 1}, {2, 0}, {1, 0}}));
    EXPECT_NEAR(DistanceAt(all->theta, {1, 0}), 2e8, 1.0);
}

TEST_F(SeriesContactsTest, ManyBodiesTouchAsInTinySteps) {
    // The first contact is found by steps so short that bodies hardly move in them, too. Massless
    // bodies do not touch each other.
    for (const int32 massive : {5, 36}) {
        const PointSystem system = Cluster(40, massive);
        const std::vector<double> radii(system.size(), 1e10);
        Start(system, radii, 1e-14);
        const auto found = FirstContact(100'000);
        ASSERT_TRUE(found);
        Start(system, radii, 1e-14);
        bool touches = false;
        double time = 0.0;
        while (!touches && stepper_.MakeStep(stop_) == SeriesStepper::Result::kDone)
            for (int32 part = 0; part <= 100 && !touches; part++) {
                const double theta = stepper_.Step().Theta() * part / 100;
                const PointSystem state = StateAt(&stepper_, theta);
                time = stepper_.Step().TimeAt(theta);
                for (std::size_t i = 0; i < static_cast<std::size_t>(massive); i++)
                    for (std::size_t k = i + 1; k < state.size(); k++) {
                        const ThreeVector d = state[i].position - state[k].position;
                        touches |= std::hypot(d.x, d.y, d.z) <= 2e10;
                    }
            }
        EXPECT_NEAR(found->time, time, stepper_.Step().Length() / 99) << massive;
        EXPECT_LE(found->time, time);
    }
}
