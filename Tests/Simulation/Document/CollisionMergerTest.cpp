#include "Simulation/Document/CollisionMerger.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/CompositeSystem.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/Conservation.h"
#include "Simulation/Document/SystemState.h"

namespace {

constexpr rgb_color kRed{200, 0, 40, 255};
constexpr rgb_color kGreen{0, 100, 40, 255};

class CollisionMergerTest : public testing::Test {
protected:
    CollisionMergerTest() {
        root_.AddChild(epoch_);
        portal_.SetEpochTo(epoch_);
    }

    Body* Add(const char* name, int64 id, double m, double x, double vx = 0.0) {
        auto* body = new Body(name, id, kRed, kRed, kOriginID);
        body->SetM(m);
        body->SetRadius(1.0);
        body->SetPosition({x, 0.0, 0.0});
        body->SetVelocity({vx, 0.5, 0.0});
        epoch_->RootSystem()->AddChild(body);
        return body;
    }
    void Touch(int64 lighter, int64 heavier) {
        message_.AddInt64("p", lighter);
        message_.AddInt64("q", heavier);
    }
    MergeResult Merge() { return MergeCollidingBodies(&portal_, message_, " & "); }
    void ExpectNamesAfter(std::initializer_list<std::pair<int64, int64>> touching,
                          const char* names) {
        Add("A", 0, 7.0, 0.0);
        Add("B", 1, 3.0, 1.0);
        Add("C", 2, 2.0, 2.0);
        for (const auto& [lighter, heavier] : touching)
            Touch(lighter, heavier);
        Merge();
        EXPECT_EQ(epoch_->RootSystem()->M(), 12.0);
        std::string found;
        for (const Body* body : portal_.BodiesInMassOrder())
            found += body->Name() + ", ";
        EXPECT_EQ(found, names);
    }
    MassSystem* Find(int64 id) { return epoch_->SystemFromID(id); }
    int32 CountBodies() { return epoch_->RootSystem()->CountChildren(); }

    UndoChain chain_;
    Epoch root_;
    Epoch* const epoch_ = new Epoch;
    EpochPortal portal_{&chain_, &root_};
    BMessage message_{FourCC("clsn")};
};

TEST_F(CollisionMergerTest, PairBecomesOneBodyWithMassMomentumAndVolumeKept) {
    Body* heavy = Add("Sol", 7, 3.0, 0.0, 1.0);
    Body* light = Add("Ida", 2, 1.0, 4.0, -7.0);
    heavy->SetTrailColor(kGreen);
    light->SetDiscColor({1, 2, 3, 0});
    Touch(2, 7);
    const MergeResult result = Merge();

    ASSERT_EQ(CountBodies(), 1);
    ASSERT_NE(Find(7), nullptr);
    EXPECT_EQ(heavy->Name(), "Sol & Ida");
    EXPECT_EQ(heavy->M(), 4.0);
    EXPECT_EQ(heavy->Position(), (ThreeVector{1.0, 0.0, 0.0}));
    EXPECT_EQ(heavy->Velocity(), (ThreeVector{-1.0, 0.5, 0.0}));
    EXPECT_DOUBLE_EQ(heavy->Radius(), std::cbrt(2.0));
    EXPECT_EQ(heavy->TrailColor(), (rgb_color{50, 75, 40, 255}));
    EXPECT_EQ(heavy->DiscColor().alpha, 255);

    ASSERT_EQ(result.mergers.size(), 1u);
    EXPECT_EQ(result.mergers[0].survivorName, "Sol");
    EXPECT_EQ(result.mergers[0].absorbedName, "Ida");
    // Before: 3/2 + 49/2 along x; after: 4/2.
    EXPECT_DOUBLE_EQ(result.mergers[0].kineticEnergyLoss, 24.0);
    EXPECT_FALSE(chain_.CanUndo());
}

// In the order in which the integrator finds the pairs: the lighter "heavier bodies" first.
TEST_F(CollisionMergerTest, AllBodiesOfOneMessageEndInTheirSurvivors) {
    ExpectNamesAfter({{2, 1}, {2, 0}, {1, 0}}, "A & B & C, ");
}

TEST_F(CollisionMergerTest, BodyAbsorbedEarlierIsFollowedToWhatItBecamePartOf) {
    ExpectNamesAfter({{1, 0}, {2, 1}}, "A & B & C, ");
}

TEST_F(CollisionMergerTest, BodyTouchingTwoOthersJoinsTheFirstAndLeavesThemApart) {
    ExpectNamesAfter({{2, 1}, {2, 0}}, "A, B & C, ");
}

TEST_F(CollisionMergerTest, MasslessBodyIsSwallowedAndMasslessPairsAverage) {
    Add("Sun", 0, 5.0, 0.0, 2.0);
    Add("probe", 1, 0.0, 1.0, 9.0);
    Touch(1, 0);
    Merge();
    EXPECT_EQ(Find(0)->Velocity(), (ThreeVector{2.0, 0.5, 0.0}));
    EXPECT_EQ(Find(0)->M(), 5.0);

    message_.MakeEmpty();
    Add("dust", 2, 0.0, 10.0, 1.0);
    Add("grain", 3, 0.0, 12.0, 3.0);
    Touch(3, 2);
    Merge();
    EXPECT_EQ(Find(2)->Position(), (ThreeVector{11.0, 0.0, 0.0}));
    EXPECT_EQ(Find(2)->Velocity(), (ThreeVector{2.0, 0.5, 0.0}));
    EXPECT_EQ(Find(2)->M(), 0.0);
}

TEST_F(CollisionMergerTest, NonsensePairsAreSkipped) {
    Add("A", 0, 5.0, 0.0);
    Add("B", 1, 3.0, 1.0);
    Touch(99, 0);
    Touch(1, 99);
    Touch(0, 0);
    Touch(kRootSystemID, 0);
    message_.AddInt64("p", 1);  // without its "q"
    EXPECT_TRUE(Merge().mergers.empty());
    EXPECT_EQ(CountBodies(), 2);
    EXPECT_EQ(Find(0)->M(), 5.0);
}

TEST_F(CollisionMergerTest, AbsorbedFocusHandsItOver) {
    Add("A", 0, 5.0, 0.0);
    Add("B", 1, 3.0, 1.0);
    Add("C", 2, 1.0, 2.0);
    portal_.SetSystemFromID(2);
    Touch(2, 1);
    Touch(1, 0);
    Merge();
    EXPECT_EQ(portal_.FocusSystem(), Find(0));
}

// Such a run would stop at the same place for ever.
TEST_F(CollisionMergerTest, TellsWhatTouchesAndCannotBeMerged) {
    Body* const heavy = Add("A", 0, 5.0, 0.0);
    Body* const light = Add("B", 1, 3.0, 1.5);
    Touch(1, 0);
    // The volumes of these add up to no number.
    heavy->SetRadius(1e120);
    MergeResult result = Merge();
    EXPECT_TRUE(result.mergers.empty());
    ASSERT_TRUE(result.unmerged);
    EXPECT_EQ(result.unmerged->reason, RunEnding::Reason::kNotMerged);
    EXPECT_EQ(result.unmerged->pair->later, 1);
    EXPECT_EQ(result.unmerged->pair->earlier, 0);
    EXPECT_EQ(result.unmerged->pair->distance, 1.5);
    EXPECT_EQ(CountBodies(), 2);
    EXPECT_EQ(heavy->M(), 5.0);

    // Nor is what is at no place merged, though nobody can say that it does not touch.
    heavy->SetRadius(1.0);
    light->SetVelocity({NAN, 0.0, 0.0});
    EXPECT_TRUE(Merge().unmerged);
    light->SetVelocity({});
    light->SetPosition({NAN, 0.0, 0.0});
    EXPECT_TRUE(Merge().unmerged);
    EXPECT_EQ(CountBodies(), 2);

    // What somebody has moved apart meanwhile, or deleted, lets the run go on.
    light->SetPosition({2.5, 0.0, 0.0});
    EXPECT_FALSE(Merge().unmerged);
    message_.MakeEmpty();
    Touch(7, 0);
    EXPECT_FALSE(Merge().unmerged);
}

TEST_F(CollisionMergerTest, TellsOfOneIdentifierForTwoBodies) {
    Add("A", 0, 5.0, 0.0);
    auto* const group = new CompositeSystem("Group", 4, {}, {}, kOriginID);
    epoch_->RootSystem()->AddChild(group);
    auto* const twin = new Body("Twin", 0, kRed, kRed, kOriginID);
    twin->SetM(2.0);
    twin->SetRadius(1.0);
    group->AddChild(twin);
    Touch(0, 0);
    EXPECT_TRUE(Merge().unmerged);
    // A reserved one finds something else.
    message_.MakeEmpty();
    Body* const reserved = new Body("Origin", kOriginID, kRed, kRed, kOriginID);
    reserved->SetM(1.0);
    reserved->SetRadius(1.0);
    epoch_->RootSystem()->AddChild(reserved);
    Touch(kOriginID, 0);
    EXPECT_TRUE(Merge().unmerged);
    EXPECT_EQ(portal_.BodiesInMassOrder().size(), 3u);
}

// The run may have been paused, and more, while the report was on its way.
TEST_F(CollisionMergerTest, LateReportCountsOnlyInTheEpochOfTheRun) {
    Add("A", 0, 5.0, 0.0);
    Add("B", 1, 3.0, 1.0);
    Touch(1, 0);
    auto* const copy = epoch_->Copy();
    epoch_->AddChild(copy);
    portal_.SetEpochTo(copy);
    EXPECT_TRUE(MergeCollidingBodies(&portal_, message_, " & ", epoch_).mergers.empty());
    EXPECT_EQ(copy->RootSystem()->CountChildren(), 2);
    EXPECT_EQ(CountBodies(), 2);

    portal_.SetEpochTo(epoch_);
    epoch_->SetWriteable(false);
    EXPECT_EQ(MergeCollidingBodies(&portal_, message_, " & ", epoch_).mergers.size(), 1u);
    EXPECT_EQ(CountBodies(), 1) << "of the record, not of a copy";
    EXPECT_EQ(portal_.FocusEpoch(), epoch_);
    EXPECT_FALSE(epoch_->Writeable());
}

TEST_F(CollisionMergerTest, EnergyChangeIsThatOfTheWholeSystem) {
    Add("A", 0, 5.0, 0.0, 0.3);
    Add("B", 1, 3.0, 1.5, -0.7);
    Add("C", 2, 2.0, -2.0, 0.9);
    Add("D", 3, 1.0, 6.0, -0.1);
    Touch(3, 1);
    Touch(2, 0);
    const double before = MeasureConserved(TakeState(&portal_)).energy;
    const MergeResult result = Merge();
    EXPECT_NEAR(result.energyChange, MeasureConserved(TakeState(&portal_)).energy - before,
                1e-12 * std::fabs(before));
}

}  // namespace
