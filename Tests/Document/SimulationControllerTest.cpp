#include "SimulationController.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "BodyColors.h"
#include "ProgramResources.h"
#include "RunControlView.h"
#include "SampleDocument.h"

namespace {

double Length(ThreeVector v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

class SimulationControllerTest : public testing::Test {
protected:
    SimulationControllerTest() { EXPECT_FALSE(document_.Load(PlanetRecord()).Failed()); }

    EpochPortal* Portal() { return document_.Portal(); }
    AbEpoch* Focus() { return Portal()->FocusEpoch(); }
    std::size_t CountBodies() { return Portal()->BodiesInMassOrder().size(); }
    BMessage Archive() {
        BMessage archive;
        EXPECT_EQ(Focus()->RootSystem()->Archive(&archive), B_OK);
        return archive;
    }

    ProgramResources resources_;
    SimulationDocument document_{nullptr};
    RunControlView view_;
    RunControl run_{Portal(), document_.GetCalculator(), &view_};
    SimulationController controller_{&document_, &run_, &resources_};
};

TEST_F(SimulationControllerTest, NewBodiesAreDistinctTouchNothingAndStayInOrbit) {
    const std::size_t before = CountBodies();
    const BMessage archive = Archive();
    for (int i = 0; i < 12; i++)
        controller_.CreateBody();
    const std::vector<Body*> bodies = Portal()->BodiesInMassOrder();
    ASSERT_EQ(bodies.size(), before + 12);

    std::set<std::string> names;
    std::set<int64> ids;
    for (const Body* body : bodies) {
        names.insert(body->Name());
        ids.insert(body->ID());
        for (const Body* other : bodies)
            EXPECT_TRUE(other == body || Length(body->Position() - other->Position()) >
                                             body->Radius() + other->Radius());
    }
    EXPECT_EQ(names.size(), bodies.size());
    EXPECT_EQ(ids.size(), bodies.size());

    const Body* heaviest = bodies.front();
    const MassSystem* newest = Portal()->FocusSystem();
    const double distance = Length(newest->Position() - heaviest->Position());
    const double speed = Length(newest->Velocity() - heaviest->Velocity());
    EXPECT_NEAR(speed * speed * distance / (heaviest->M() + newest->M()), 1.0, 1e-12);

    while (controller_.Undo()) {
    }
    EXPECT_TRUE(archive == Archive());
}

TEST_F(SimulationControllerTest, NewBodiesAreShownInTheUnitsBeforeTheUsersEyes) {
    MassSystem* const before = Portal()->FocusSystem();
    before->SetPositionUval(1000.0);
    before->SetSpeedUval(1000.0);
    controller_.CreateBody();
    const MassSystem* const newest = Portal()->FocusSystem();
    ASSERT_NE(newest, before);
    EXPECT_EQ(newest->PositionUval(), 1000.0);
    EXPECT_EQ(newest->SpeedUval(), 1000.0);
    EXPECT_EQ(newest->M() / newest->MassUval(), 1.0);
}

TEST_F(SimulationControllerTest, NewBodyInAnEmptyDocumentRestsAtTheOrigin) {
    Epoch empty;
    ASSERT_FALSE(document_.Load(RecordOf({&empty})).Failed());
    controller_.CreateBody();
    ASSERT_EQ(CountBodies(), 1u);
    EXPECT_EQ(Portal()->FocusSystem()->Position(), ThreeVector{});
}

TEST_F(SimulationControllerTest, CenterOfMassGoesToTheOriginAsOneStep) {
    const BMessage before = Archive();
    ASSERT_TRUE(controller_.ToCenterOfMass());
    const MassSystem* root = Focus()->RootSystem();
    EXPECT_LT(Length(root->Position()), 1e-3);
    EXPECT_LT(Length(root->Velocity()), 1e-9);
    EXPECT_TRUE(controller_.Undo());
    EXPECT_FALSE(controller_.Undo());
    EXPECT_TRUE(before == Archive());
}

TEST_F(SimulationControllerTest, LoggingDuringARunLetsItGoOnInTheCopy) {
    run_.TogglePause();
    AbEpoch* const running = Focus();
    controller_.DupCurrentEpoch();
    EXPECT_EQ(run_.PauseCount(), 0);
    EXPECT_EQ(Focus()->Parent(), running);
    EXPECT_FALSE(running->Writeable());
    EXPECT_NE(running->CalculatorState(), nullptr);
    run_.TogglePause();
    EXPECT_GE(Focus()->Time(), running->Time());
}

TEST(BodyColorsTest, ColoursStandOutOnTheSkyAndAvoidThoseInUse) {
    const rgb_color sky{8, 8, 16, 255};
    std::vector<rgb_color> inUse;
    for (int32 i = 0; i < 6; i++) {
        const rgb_color color = BodyColors::Next(0, inUse);
        EXPECT_GT(BodyColors::Distance(color, sky), 250.0);
        for (const rgb_color used : inUse)
            EXPECT_GE(BodyColors::Distance(color, used), 120.0);
        inUse.push_back(color);
    }
    // With every colour taken the sequence simply goes on.
    for (int32 i = 0; i < 200; i++)
        inUse.push_back(BodyColors::At(i));
    EXPECT_EQ(BodyColors::Next(5, inUse), BodyColors::At(5));
}

// Resumed it would find the same bodies again, for ever.
TEST_F(SimulationControllerTest, ARunIsPausedWhereBodiesTouchThatCannotBeMerged) {
    Portal()->WriteLock();
    for (const int64 id : {0, 1})
        Focus()->SystemFromID(id)->SetRadius(1e120);
    Portal()->WriteUnlock();
    BMessage touching(FourCC("clsn"));
    touching.AddInt64("p", 1);
    touching.AddInt64("q", 0);
    run_.UnPause();
    int told = 0;
    const MergeResult result =
        controller_.Collide(touching, [&told](const MergeResult&) { told++; });
    EXPECT_TRUE(result.unmerged);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(run_.PauseCount(), 1);
    EXPECT_TRUE(run_.UserPaused());
    EXPECT_EQ(CountBodies(), 4u);
}

}  // namespace
