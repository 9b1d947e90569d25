#include "Simulation/Document/SimulationController.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <thread>

#include "Model/Commands/SystemFactories.h"
#include "Simulation/Document/BodyColors.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Platform/TestFolder.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

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

TEST_F(SimulationControllerTest, WhatAHandDidIsOneStepEachAndLeavesRecordsAlone) {
    const BMessage before = Archive();
    const int64 planet = Portal()->BodiesInMassOrder()[1]->ID();
    const ThreeVector place{1e11, 2e10, -3e9};
    const ThreeVector velocity{-100.0, 2.5e4, 12.0};
    EXPECT_TRUE(controller_.SetVector(planet, kPositionQuantity, place));
    EXPECT_TRUE(controller_.SetVector(planet, kVelocityQuantity, velocity));
    EXPECT_EQ(Focus()->SystemFromID(planet)->Position(), place);
    EXPECT_EQ(Focus()->SystemFromID(planet)->Velocity(), velocity);
    // Nothing new, nobody there, no place: no step.
    EXPECT_FALSE(controller_.SetVector(planet, kPositionQuantity, place));
    EXPECT_FALSE(controller_.SetVector(12345, kPositionQuantity, {}));
    EXPECT_FALSE(controller_.SetVector(planet, kPositionQuantity, {1e200, 0.0, 0.0}));
    const SimulationController::Motion tooFar{{1e200, 0.0, 0.0}, {}};
    const std::size_t bodies = CountBodies();
    controller_.CreateBody(&tooFar);
    EXPECT_EQ(CountBodies(), bodies);
    const SimulationController::Motion motion{{5e11, 0.0, 1e9}, {0.0, 1.2e4, 0.0}};
    controller_.CreateBody(&motion);
    EXPECT_EQ(Portal()->FocusSystem()->Position(), motion.position);
    EXPECT_EQ(Portal()->FocusSystem()->Velocity(), motion.velocity);
    for (int32 step = 0; step < 3; step++)
        EXPECT_TRUE(controller_.Undo());
    EXPECT_TRUE(Archive() == before);
    EXPECT_FALSE(controller_.Undo());

    AbEpoch* const record = Focus();
    record->SetWriteable(false);
    EXPECT_TRUE(controller_.SetVector(planet, kPositionQuantity, place));
    EXPECT_EQ(Focus()->Parent(), record);
    EXPECT_TRUE(controller_.Undo());
    EXPECT_EQ(Focus(), record);
    EXPECT_TRUE(Archive() == before);
}

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

TEST_F(SimulationControllerTest, NewBodiesNeverRunOutOfIdentifiersAndNames) {
    Focus()->RootSystem()->AddChild(MakeBody("Last", kMaxSystemID, 0, {9e11, 0, 0}, {}).release());
    document_.SetNextBodyNameIndex(std::numeric_limits<int32>::max());
    std::set<int64> ids;
    for (int i = 0; i < 3; i++) {
        controller_.CreateBody();
        ids.insert(Portal()->FocusSystem()->ID());
    }
    EXPECT_EQ(ids, (std::set<int64>{4, 5, 6})) << "the gaps";
    EXPECT_EQ(document_.NextBodyNameIndex(), 2);
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

// What is in focus is what is in focus when nobody else is changing it, and not a moment before.
TEST_F(SimulationControllerTest, TheFocusIsReadUnderTheLock) {
    constexpr auto kLong = std::chrono::milliseconds(50);
    // The focus goes from one system to another while the edit is asked for.
    const auto during = [&](int64 from, int64 to, const std::function<void()>& edit) {
        Portal()->WriteLock();
        Portal()->SetSystemFromID(from);
        std::thread editor(edit);
        std::this_thread::sleep_for(kLong);
        Portal()->SetSystemFromID(to);
        Portal()->WriteUnlock();
        editor.join();
    };
    during(2, 1, [&] { controller_.SetRelativeTo(3); });
    EXPECT_NE(Focus()->SystemFromID(2)->RelativeTo(), 3);
    EXPECT_EQ(Focus()->SystemFromID(1)->RelativeTo(), 3);
    during(2, 3, [&] { controller_.DeleteCurrentBody(); });
    EXPECT_NE(Focus()->SystemFromID(2), nullptr);
    EXPECT_EQ(Focus()->SystemFromID(3), nullptr);
    using Grouping = SimulationController::Grouping;
    EXPECT_EQ(controller_.GroupSystems({1}, "Group"), Grouping::kDone);
    const int64 group = Portal()->FocusSystem()->ID();
    during(2, group, [&] { EXPECT_TRUE(controller_.DissolveFocusSystem()); });
    EXPECT_EQ(Focus()->SystemFromID(group), nullptr);
    // Nor is an epoch that is no longer in focus left where it is.
    AbEpoch* const first = Focus();
    controller_.DupCurrentEpoch();
    AbEpoch* const second = Focus();
    Portal()->WriteLock();
    Portal()->SetEpochTo(first);
    std::thread editor([&] { controller_.EditEpoch(first); });
    std::this_thread::sleep_for(kLong);
    Portal()->SetEpochTo(second);
    Portal()->WriteUnlock();
    editor.join();
    EXPECT_EQ(Focus(), first);
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

TEST_F(SimulationControllerTest, EditsThatChangeNothingAreNoSteps) {
    const auto first = MakePlanetEpoch("A");
    const auto last = MakePlanetEpoch("B");
    BMessage record = RecordOf({first.get(), last.get()});
    record.AddInt32("Cur Epoch", 1);
    ASSERT_FALSE(document_.Load(record).Failed());
    Focus()->SetWriteable(false);
    // In focus, with none after it; one that is gone; no such system, in a record.
    EXPECT_FALSE(controller_.DeleteEpoch(Focus()));
    const auto gone = MakePlanetEpoch("C");
    EXPECT_FALSE(controller_.DeleteEpoch(gone.get()));
    controller_.EditEpoch(gone.get());
    controller_.DeleteBody(12345);
    controller_.DeleteBody(kRootSystemID);
    EXPECT_EQ(Outline(document_.Root()), "A B");
    EXPECT_FALSE(document_.GetUndoChain()->CanUndo());
    EXPECT_TRUE(document_.GetUndoChain()->IsSaved());

    EXPECT_TRUE(controller_.DeleteEpoch(document_.Root()->ChildAt(0)));
    EXPECT_EQ(Outline(document_.Root()), "B");
    EXPECT_FALSE(document_.GetUndoChain()->IsSaved());
}

TEST_F(SimulationControllerTest, EditsDuringARunAreUndoneInACopyOfItsRecord) {
    const auto rename = [&](const char* name) {
        CommitEntry(Portal(), NameFactory(0), std::string(name));
    };
    const auto starName = [&] { return Focus()->SystemFromID(0)->Name(); };
    const std::string old = starName();
    run_.TogglePause();
    rename("First");
    CommitEntry(Portal(), SystemQuantityFactory(SystemQuantityFactory::Quantity::kMass, 0),
                DimValue(kSunGM / 2.0, 1.0));
    rename("Second");
    run_.TogglePause();
    AbEpoch* const record = Focus();
    const BMessage content = Archive();
    const std::string tree = "Genesis(Genesis(Genesis))";

    ASSERT_TRUE(controller_.Undo());
    AbEpoch* const copy = Focus();
    EXPECT_EQ(copy->Parent(), record);
    EXPECT_TRUE(copy->Writeable());
    EXPECT_EQ(starName(), "First");
    ASSERT_TRUE(controller_.Undo());
    ASSERT_TRUE(controller_.Undo());
    EXPECT_EQ(Focus(), copy);
    EXPECT_EQ(starName(), old);
    EXPECT_EQ(Focus()->SystemFromID(0)->M(), kSunGM);
    EXPECT_EQ(Outline(document_.Root()), tree);

    // The run itself, and all of it again: what was undone is undone still.
    ASSERT_TRUE(controller_.Undo());
    EXPECT_EQ(Outline(document_.Root()), "Genesis");
    ASSERT_TRUE(controller_.Redo());
    EXPECT_EQ(Focus(), copy);
    for (int i = 0; i < 3; i++)
        ASSERT_TRUE(controller_.Redo());
    EXPECT_EQ(Focus(), record);
    EXPECT_EQ(Outline(document_.Root()), "Genesis(Genesis)");
    EXPECT_EQ(Archive(), content);

    ASSERT_TRUE(controller_.Undo());
    EXPECT_EQ(Focus(), copy);
    EXPECT_EQ(starName(), "First");
    EXPECT_EQ(Outline(document_.Root()), tree);
    BMessage kept;
    EXPECT_EQ(record->RootSystem()->Archive(&kept), B_OK);
    EXPECT_EQ(kept, content);
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

// What can be made can be saved, and what can be read at all is read.
TEST_F(SimulationControllerTest, EpochsAreNestedNoDeeperThanADocumentCanHold) {
    NestAsDeepAsPossible(Portal());
    AbEpoch* const last = Focus();
    controller_.DupCurrentEpoch();
    run_.UnPause();
    controller_.CreateBody();
    Portal()->ReadLock();
    auto rename = NameFactory(7).MakeCommand(Portal(), "New");
    Portal()->ReadUnlock();
    EXPECT_FALSE(ExecuteFiled(Portal(), std::move(rename)));
    EXPECT_FALSE(controller_.ToCenterOfMass());
    EXPECT_EQ(Focus(), last);
    EXPECT_EQ(last->CountChildren(), 0);
    EXPECT_FALSE(last->Writeable());
    EXPECT_EQ(last->RootSystem()->CountChildren(), 1);
    EXPECT_FALSE(document_.GetUndoChain()->CanUndo());

    // A writeable one may be edited, and one that is less deep be run, once.
    last->SetWriteable(true);
    controller_.CreateBody();
    EXPECT_EQ(last->RootSystem()->CountChildren(), 2);
    controller_.EditEpoch(last->Parent());
    run_.UnPause();
    run_.Pause();
    EXPECT_EQ(Focus()->Parent(), last->Parent());
    run_.UnPause();
    run_.Pause();
    EXPECT_EQ(Focus()->Parent(), last->Parent());
    BMessage record;
    TestFolder folder;
    ASSERT_FALSE(document_.Store(&record, true).Failed());
    EXPECT_FALSE(SimulationFile::Write(folder.Path("deep"), record).Failed());
}

}  // namespace
