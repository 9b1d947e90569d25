// Runs that stop where something happens.
#include "Calculation/RunCondition.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Tests/Calculation/TaylorFixtures.h"

namespace {

constexpr double kGm = 1e20;
constexpr double kRadius = 1e10;

// A planet on an ellipse of eccentricity 0.5 begins at its far end, (1.5, 0, 0) radii; another one
// rests far away.
class Ellipse : public TestSystem {
public:
    explicit Ellipse(int32 order) : TestSystem(order) {
        Add(0, kGm, {}, {});
        Add(1, 0.0, {1.5 * kRadius, 0, 0}, {0, std::sqrt(kGm / kRadius / 3.0), 0});
        Add(2, 0.0, {1e15, 0, 1e15}, {});
    }
    // The reports of a run up to the condition.
    std::vector<double> TimesUntil(const RunCondition& condition) {
        const auto calculator = MakeCalculator(this);
        RecordingConsumer consumer(this, *calculator);
        calculator->SetRunCondition(condition);
        calculator->SetRunLimit(0, 20.0 * kPeriod);
        RunUntilParked(calculator.get());
        return consumer.Times();
    }

    const double kPeriod = 2.0 * M_PI * std::sqrt(kRadius * kRadius * kRadius / kGm);
};

// The last report is at that moment; of order 4 it is the first one past it.
void ExpectStopAt(double moment, const std::vector<double>& times, bool isExact) {
    ASSERT_GT(times.size(), 2u);
    EXPECT_GE(times.back(), moment - 1.0);
    EXPECT_LT(times[times.size() - 2], moment + 1.0);
    if (isExact) {
        EXPECT_NEAR(times.back(), moment, 1e-6);
    }
}

}  // namespace

TEST(RunCondition, IsMetAtTheMomentOrAtTheFirstReportPastIt) {
    for (const int32 order : {4, 16}) {
        SCOPED_TRACE(order);
        const bool isExact = order > 4;
        Ellipse near(order);
        ExpectStopAt(near.kPeriod / 2.0, near.TimesUntil(RunCondition::ClosestApproach(1, 0)),
                     isExact);
        // Kepler's equation where x = 0: E = 60 degrees before the near end.
        const double mean = M_PI / 3.0 - 0.5 * std::sin(M_PI / 3.0);
        Ellipse plane(order);
        ExpectStopAt(plane.kPeriod * (0.5 - mean / (2.0 * M_PI)),
                     plane.TimesUntil(RunCondition::Crossing(0, 1)), isExact);
        // It begins in that plane: the next time counts.
        Ellipse start(order);
        ExpectStopAt(start.kPeriod / 2.0, start.TimesUntil(RunCondition::Crossing(1, 1, 0)),
                     isExact);
        // A body that is unbound: of its path only the distance is to be waited for.
        Ellipse escaping(order);
        escaping.Add(3, 0.0, {0, 2.0 * kRadius, 0}, {0, 1e6, 0});
        const std::vector<double> times =
            escaping.TimesUntil(RunCondition::Escape(3, 20.0 * kRadius));
        EXPECT_GT(times.size(), 2u);
        const double distance = Length(escaping.Find(3)->Position());
        EXPECT_GE(distance, 20.0 * kRadius);
        EXPECT_LT(distance, (isExact ? 1.0 + 1e-14 : 1.01) * 20.0 * kRadius);
    }
}

// Between two reports a body may go through a plane and back.
TEST(RunCondition, SeesABodyThatOnlyDipsIntoThePlane) {
    Ellipse system(16);
    system.Add(3, 0.0, {-0.5 * kRadius + 1.0, 0, 1e15}, {});
    const std::vector<double> times = system.TimesUntil(RunCondition::Crossing(0, 1, 3));
    ASSERT_GT(times.size(), 2u);
    // A metre before the near end, where the path's radius is 0.75.
    const double speed = std::sqrt(3.0 * kGm / kRadius);
    EXPECT_NEAR(times.back(), system.kPeriod / 2.0 - std::sqrt(1.5 * kRadius) / speed, 0.1);
    EXPECT_NEAR(system.Find(1)->Position().x, -0.5 * kRadius + 1.0, 1e-3);
}

// Time falls: they come nearer where they would go apart. And who goes on finds the bits of a run
// that did not stop.
TEST(RunCondition, HoldsOnTheWayBackAndLeavesTheRunAsItIs) {
    Ellipse there(16), through(16);
    for (Ellipse* const system : {&there, &through}) {
        const auto calculator = MakeCalculator(system);
        calculator->SetBackwards(true);
        const double end = -0.8 * system->kPeriod;
        if (system == &there) {
            calculator->SetRunCondition(RunCondition::ClosestApproach(1, 0));
            calculator->SetRunLimit(0, end);
            system->RunUntilParked(calculator.get());
            EXPECT_NEAR(calculator->TBase(), -0.5 * system->kPeriod, 1e-6);
        }
        calculator->SetRunLimit(0, end);
        system->RunUntilParked(calculator.get());
        EXPECT_EQ(calculator->TBase(), end);
    }
    EXPECT_EQ(there.Find(1)->Position(), through.Find(1)->Position());
    EXPECT_EQ(there.Find(1)->Velocity(), through.Find(1)->Velocity());
}

TEST(RunCondition, HoldsOnceAndNotWithoutItsBodies) {
    Ellipse system(4);
    const auto calculator = MakeCalculator(&system);
    calculator->SetRunCondition(RunCondition::ClosestApproach(1, 0));
    system.RunUntilParked(calculator.get());
    const double stop = calculator->TBase();
    const double later = stop + 1.5 * system.kPeriod;
    calculator->SetRunLimit(0, later);
    system.RunUntilParked(calculator.get());
    EXPECT_GE(calculator->TBase(), later) << "past the next one";

    const double before = calculator->TBase();
    calculator->SetRunCondition(RunCondition::Crossing(2, 7));
    system.RunUntilParked(calculator.get());
    EXPECT_EQ(calculator->TBase(), before);
}

// Nothing pulls: a single step leads past what is waited for, or there would be none at all.
TEST(RunCondition, IsMetOnStraightWaysToo) {
    const struct {
        RunCondition condition;
        double time;  // s; where time falls it is before 0
    } cases[] = {
        {RunCondition::Crossing(2, 1), 1.5},
        {RunCondition::Crossing(0, 2, 1), 10.0},
        {RunCondition::ClosestApproach(1, 2), 3.5 / 4.25},
        {RunCondition::Escape(2, 13.0), 16.0},
        {RunCondition::Crossing(0, 2), -10.0},
        {RunCondition::Escape(1, 13.0), -5.0},
    };
    for (const int32 order : {4, 16})
        for (const double limit : {100.0, HUGE_VAL})
            for (const auto& [condition, time] : cases) {
                if (order == 4 && time < 0.0) continue;
                SCOPED_TRACE(testing::Message() << order << ' ' << limit << ' ' << time);
                TestSystem system(order);
                system.Add(1, 0.0, {0, 0, -3}, {0, 0, 2});
                system.Add(2, 0.0, {5, 0, 0}, {time > 5.0 && time < 15.0 ? -0.5 : 0.5, 0, 0});
                const auto calculator = MakeCalculator(&system);
                RecordingConsumer consumer(&system, *calculator);
                calculator->SetBackwards(time < 0.0);
                calculator->SetRunCondition(condition);
                calculator->SetRunLimit(0, limit < HUGE_VAL ? std::copysign(limit, time) : limit);
                system.RunUntilParked(calculator.get());
                ASSERT_EQ(consumer.Times().size(), 1u);
                const bool isExact = order > 4 || limit == HUGE_VAL;
                EXPECT_NEAR(consumer.Times()[0], isExact ? time : limit, 1e-6);
                EXPECT_NEAR(system.Find(1)->Position().z, -3 + 2 * consumer.Times()[0], 1e-9);
                EXPECT_EQ(system.GetEpoch()->Time(), consumer.Times()[0]);
            }
}

TEST(RunCondition, IsNotWaitedForOnStraightWaysThatLeadAway) {
    for (const RunCondition& condition :
         {RunCondition::Crossing(0, 2), RunCondition::Crossing(1, 2),
          RunCondition::ClosestApproach(2, 1), RunCondition::Escape(1, 1.0)}) {
        TestSystem system(16);
        system.Add(1, 0.0, {0, 0, -3}, {});
        system.Add(2, 0.0, {5, 0, 0}, {0.5, 0, 0});
        const auto calculator = MakeCalculator(&system);
        calculator->SetRunCondition(condition);
        system.RunUntilParked(calculator.get());
        EXPECT_EQ(calculator->TBase(), 0.0);
    }
}
