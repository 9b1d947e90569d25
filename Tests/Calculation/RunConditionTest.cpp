// Runs that stop where something happens.
#include "Calculation/RunCondition.h"

#include <gtest/gtest.h>

#include <cmath>

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

// The last report, and none before it, is past that moment.
void ExpectStopAt(double moment, const std::vector<double>& times) {
    ASSERT_GT(times.size(), 2u);
    EXPECT_GE(times.back(), moment - 1.0);
    EXPECT_LT(times[times.size() - 2], moment + 1.0);
}

}  // namespace

TEST(RunCondition, IsMetAtTheFirstReportPastTheMoment) {
    for (const int32 order : {4, 16}) {
        SCOPED_TRACE(order);
        Ellipse near(order);
        ExpectStopAt(near.kPeriod / 2.0, near.TimesUntil(RunCondition::ClosestApproach(1, 0)));
        // Kepler's equation where x = 0: E = 60 degrees before the near end.
        const double mean = M_PI / 3.0 - 0.5 * std::sin(M_PI / 3.0);
        Ellipse plane(order);
        ExpectStopAt(plane.kPeriod * (0.5 - mean / (2.0 * M_PI)),
                     plane.TimesUntil(RunCondition::Crossing(0, 1)));
        // It begins in that plane: the next time counts.
        Ellipse start(order);
        ExpectStopAt(start.kPeriod / 2.0, start.TimesUntil(RunCondition::Crossing(1, 1, 0)));
    }
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
