// A run that is held and goes on has the bits of one that was never held.
#include <gtest/gtest.h>

#include "Calculation/StepControl.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Tests/Calculation/TaylorFixtures.h"

namespace {

// Promotes the parts often: the interval is that of the order at this cutoff.
constexpr double kCutoff = 9e-4;

int32 PromotionInterval(int32 order) {
    StepControl control;
    control.Restart(kCutoff, order);
    return control.PromotionInterval();
}

struct Reports {
    std::vector<double> times, positions, velocities;
    BMessage state;
    bool operator==(const Reports&) const = default;
};

// In one go, or held after every step.
Reports RunSteps(int32 order, int32 steps, bool isHeld) {
    TestSystem system(Planets(5, 3), order, kCutoff);
    const auto calculator = MakeCalculator(&system);
    RecordingConsumer consumer(&system, *calculator);
    system.Run(calculator.get(), isHeld ? 1 : steps);
    for (int32 step = 1; isHeld && step < steps; step++)
        system.Run(calculator.get(), 1, true);
    return {consumer.Times(), consumer.Positions(), consumer.Velocities(), ArchiveOf(*calculator)};
}

}  // namespace

TEST(HeldRun, HasTheBitsOfOneThatWasNeverHeldAtEveryStepOfSeveralPromotions) {
    for (const int32 order : {2, 3, 4}) {
        SCOPED_TRACE(order);
        const int32 steps = 3 * PromotionInterval(order) + 10;
        const Reports held = RunSteps(order, steps, true);
        ASSERT_EQ(held.times.size(), static_cast<size_t>(steps));
        EXPECT_TRUE(held == RunSteps(order, steps, false));
    }
}

// Whoever touched the model meanwhile gets a new run.
TEST(HeldRun, StartsAnewWhereABodyIsAnother) {
    const PairWalk planets = Planets(3, 3);
    TestSystem held(planets, 4, kCutoff), fresh(planets, 4, kCutoff);
    const auto calculator = MakeCalculator(&held), reference = MakeCalculator(&fresh);
    held.Run(calculator.get(), 50);
    fresh.Run(reference.get(), 50);
    for (TestSystem* const system : {&held, &fresh}) {
        // In the place of another, and just like it.
        Body* const former = system->Find(2);
        system->Add(7, former->M(), former->Position(), former->Velocity());
        system->GetEpoch()->RootSystem()->RemoveChild(former);
        delete former;
    }
    held.Run(calculator.get(), 50, true);
    fresh.Run(reference.get(), 50);
    EXPECT_TRUE(ArchiveOf(*calculator) == ArchiveOf(*reference));
    EXPECT_EQ(held.GetEpoch()->Time(), fresh.GetEpoch()->Time());
}

// So does whoever gives the calculator a state meanwhile, also one of fewer bodies.
TEST(HeldRun, StartsAnewFromAStateThatItIsGiven) {
    for (const int32 known : {5, 2}) {
        SCOPED_TRACE(known);
        TestSystem held(Planets(5, 3), 4, kCutoff), fresh(Planets(5, 3), 4, kCutoff);
        const auto calculator = MakeCalculator(&held), reference = MakeCalculator(&fresh);
        held.Run(calculator.get(), 50);
        fresh.Run(reference.get(), 50);
        BMessage state = ArchiveOf(*calculator);
        for (int32 i = known; i < 5; i++)
            state.RemoveData("IDs", known);
        const auto other = MakeCalculator(&fresh);
        for (const auto& each : {calculator.get(), other.get()})
            each->Regenerate(&state);
        held.Run(calculator.get(), 50, true);
        fresh.Run(other.get(), 50);
        EXPECT_TRUE(ArchiveOf(*calculator) == ArchiveOf(*other));
        EXPECT_EQ(held.GetEpoch()->Time(), fresh.GetEpoch()->Time());
    }
}
