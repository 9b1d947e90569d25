// What a calculator keeps from run to run and saves with an epoch.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "Calculation/TaylorParts.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Tests/Calculation/TaylorFixtures.h"

// Parts above those that the order feeds can only be left from a run of a higher order.
TEST(TaylorParts, PromotionDropsPartsThatTheOrderDoesNotFeed) {
    const std::vector<double> r = {1, 10, 100, 1000, 10000}, v = {2, 20, 200, 2000};
    const struct {
        int32 order;
        std::vector<double> r, v;
    } cases[] = {{4, {11, 100, 1000, 10000, 0}, {22, 200, 2000, 0}},
                 {3, {11, 100, 1000, 0, 0}, {22, 200, 2000, 0}},
                 {2, {11, 100, 0, 0, 0}, {22, 200, 0, 0}}};
    for (const auto& [order, expectedR, expectedV] : cases) {
        BMessage archive, promoted;
        archive.AddInt64("IDs", 5);
        for (int axis = 0; axis < 3; axis++) {
            archive.AddDoubles("DelR", r.data(), 5);
            archive.AddDoubles("DelV", v.data(), 4);
        }
        TaylorParts parts;
        ASSERT_EQ(parts.Regenerate(archive), B_OK);
        parts.Promote(order);
        ASSERT_EQ(parts.Archive(&promoted), B_OK);
        for (int axis = 0; axis < 3; axis++) {
            const std::vector<double> foundR = Doubles(promoted, "DelR");
            const std::vector<double> foundV = Doubles(promoted, "DelV");
            EXPECT_TRUE(std::equal(expectedR.begin(), expectedR.end(), &foundR[5 * axis]));
            EXPECT_TRUE(std::equal(expectedV.begin(), expectedV.end(), &foundV[4 * axis]));
        }
    }
}

TEST(TaylorCalculator, AnEditedBodyRestartsAndTheOthersKeepTheirParts) {
    TestSystem system(Planets(3, 3), 4, 1e-6);
    const auto calculator = MakeCalculator(&system);
    system.Run(calculator.get(), 50);
    const std::vector<double> r = Doubles(ArchiveOf(*calculator), "DelR");
    const std::vector<double> v = Doubles(ArchiveOf(*calculator), "DelV");
    system.Find(1)->SetVelocity({1, 2, 3});
    system.Find(2)->SetPosition({4, 5, 6});
    system.Add(9, 1e30, {7, 8, 9}, {10, 11, 12});  // becomes the first
    system.Portal()->WriteLock();
    calculator->Recache();
    system.Portal()->WriteUnlock();

    const BMessage archive = ArchiveOf(*calculator);
    std::vector<double> expectedR = r, expectedV = v;
    std::fill_n(&expectedV[12], 12, 0.0);
    std::fill_n(&expectedR[30], 15, 0.0);
    const double plain[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    std::vector<double> newR(15, 0.0), newV(12, 0.0);
    for (size_t k = 0; k < 3; k++) {
        expectedV[12 + 4 * k] = plain[k];
        expectedR[30 + 5 * k] = plain[3 + k];
        newR[5 * k] = plain[6 + k];
        newV[4 * k] = plain[9 + k];
    }
    expectedR.insert(expectedR.begin(), newR.begin(), newR.end());
    expectedV.insert(expectedV.begin(), newV.begin(), newV.end());
    EXPECT_EQ(Doubles(archive, "DelR"), expectedR);
    EXPECT_EQ(Doubles(archive, "DelV"), expectedV);
}

TEST(TaylorCalculator, ASavedStateContinuesBitForBit) {
    const PairWalk planets = Planets(6, 4);
    TestSystem through(planets, 4, 1e-5), parted(planets, 4, 1e-5);
    const auto uninterrupted = MakeCalculator(&through);
    through.Run(uninterrupted.get(), 500);
    auto calculator = MakeCalculator(&parted);
    parted.Run(calculator.get(), 500);
    BMessage state = ArchiveOf(*calculator);
    calculator = MakeCalculator(&parted);
    calculator->Regenerate(&state);
    EXPECT_TRUE(ArchiveOf(*calculator) == state);
    parted.Run(calculator.get(), 300);
    through.Run(uninterrupted.get(), 300);
    EXPECT_TRUE(ArchiveOf(*calculator) == ArchiveOf(*uninterrupted));
    EXPECT_EQ(parted.GetEpoch()->Time(), through.GetEpoch()->Time());
    for (int64 i = 0; i < 6; i++)
        EXPECT_TRUE(parted.Find(i)->Position() == through.Find(i)->Position());
}

// Stopped at any step, also beside a promotion, after which the parts no longer add up to the
// rounded places; the lower orders never add up.
TEST(TaylorCalculator, ARunThatIsResumedElsewhereGoesOnBitForBit) {
    constexpr double kCutoff = 9e-4;  // promotions after 20, 44 and 459 steps
    constexpr int64 kSteps = 1000;
    const PairWalk planets = Planets(6, 4);
    for (const int32 order : {2, 3, 4}) {
        TestSystem through(planets, order, kCutoff);
        const auto uninterrupted = MakeCalculator(&through);
        through.Run(uninterrupted.get(), kSteps);
        for (const int64 stop : {1, 20, 21, 22, 43, 44, 45, 46, 458, 459, 460, 461, 500, 920}) {
            SCOPED_TRACE(testing::Message() << "order " << order << ", step " << stop);
            TestSystem parted(planets, order, kCutoff);
            auto calculator = MakeCalculator(&parted);
            parted.Run(calculator.get(), stop);
            BMessage run;
            ASSERT_EQ(calculator->ArchiveRun(&run), B_OK);
            calculator = MakeCalculator(&parted);
            ASSERT_EQ(calculator->ResumeRun(run), B_OK);
            parted.Run(calculator.get(), kSteps - stop, true);
            EXPECT_TRUE(ArchiveOf(*calculator) == ArchiveOf(*uninterrupted));
            EXPECT_EQ(parted.GetEpoch()->Time(), through.GetEpoch()->Time());
            for (int64 i = 0; i < 6; i++) {
                EXPECT_TRUE(parted.Find(i)->Position() == through.Find(i)->Position());
                EXPECT_TRUE(parted.Find(i)->Velocity() == through.Find(i)->Velocity());
            }
        }
    }
}

TEST(TaylorCalculator, ARunThatDoesNotFitIsNotResumed) {
    TestSystem system(Planets(3, 2), 4, 1e-6);
    const auto source = MakeCalculator(&system);
    BMessage none, run;
    EXPECT_EQ(source->ArchiveRun(&none), B_NOT_ALLOWED);
    system.Run(source.get(), 20);
    ASSERT_EQ(source->ArchiveRun(&run), B_OK);
    const auto calculator = MakeCalculator(&system);
    for (const char* field :
         {"IDs", "DelR", "Iter", "Inverse step", "Anchor", "Elapsed", "Reports left", "Until"}) {
        BMessage without = run;
        without.RemoveName(field);
        EXPECT_NE(calculator->ResumeRun(without), B_OK) << field;
    }
    for (const double wrong : {0.0, -1.0, std::nan("")}) {
        BMessage bad = run;
        bad.ReplaceDouble("Inverse step", wrong);
        EXPECT_EQ(calculator->ResumeRun(bad), B_BAD_DATA) << wrong;
    }
    EXPECT_EQ(Iteration(ArchiveOf(*calculator)), 0) << "nothing was taken";
    system.Add(9, 1.0, {7, 8, 9}, {});
    EXPECT_EQ(calculator->ResumeRun(run), B_BAD_DATA);
}

TEST(TaylorCalculator, RegenerateTakesAllOrNothing) {
    TestSystem system(Planets(3, 2), 4, 1e-6);
    const auto source = MakeCalculator(&system);
    system.Run(source.get(), 20);
    const BMessage whole = ArchiveOf(*source);
    EXPECT_EQ(whole.what, FourCC("ARCV"));
    EXPECT_EQ(whole.CountNames(), 5);
    EXPECT_EQ(Iteration(whole), 20);
    for (const char* field : {"IDs", "DelR", "DelV", "Iter"}) {
        SCOPED_TRACE(field);
        BMessage without = whole, shorter = whole;
        without.RemoveName(field);
        shorter.RemoveData(field, 0);
        const auto fresh = MakeCalculator(&system);
        fresh->Regenerate(&without);
        EXPECT_FALSE(ArchiveOf(*fresh).HasName("IDs"));
        EXPECT_EQ(Iteration(ArchiveOf(*fresh)), 0);
        // Fewer identifiers than parts is a smaller system; all else is broken.
        fresh->Regenerate(&shorter);
        EXPECT_EQ(ArchiveOf(*fresh).HasName("IDs"), field == std::string("IDs"));
    }
    // A calculator that has a state keeps its parts, but not its place between promotions.
    source->Regenerate(nullptr);
    EXPECT_EQ(Doubles(ArchiveOf(*source), "DelR"), Doubles(whole, "DelR"));
    EXPECT_EQ(Iteration(ArchiveOf(*source)), 0);
}

// Whatever the record holds: what it has too much is left, and its counter cannot overflow.
TEST(TaylorCalculator, RegenerateTakesAnyStepCountAndLeavesWhatIsTooMuch) {
    TestSystem system(Planets(3, 2), 4, 1e-6);
    const auto source = MakeCalculator(&system);
    system.Run(source.get(), 20);
    const BMessage whole = ArchiveOf(*source);
    for (const int32 count : {std::numeric_limits<int32>::max(), -5}) {
        BMessage state = whole;
        state.ReplaceInt32("Iter", count);
        state.AddDouble("DelR", 7.0);
        state.AddDouble("DelV", 8.0);
        const auto calculator = MakeCalculator(&system);
        calculator->Regenerate(&state);
        EXPECT_EQ(Doubles(ArchiveOf(*calculator), "DelR"), Doubles(whole, "DelR"));
        EXPECT_EQ(Iteration(ArchiveOf(*calculator)), count);
        // The parts are promoted at once where they are long due.
        system.Run(calculator.get(), 4);
        EXPECT_EQ(Iteration(ArchiveOf(*calculator)), count < 0 ? -1 : 3);
    }
}
