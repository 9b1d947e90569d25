// Winding a run back, looking at it and branching from it, with mouse and keys.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "Calculation/Calculator.h"
#include "Displays/TimeLine/MomentPlayer.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/ShortestOrbit.h"
#include "Platform/Interface/Handles/BView.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/Document/SystemState.h"
#include "Tests/Platform/WaitUntil.h"
#include "Tests/Simulation/EntryHand.h"
#include "Tests/Simulation/TestSimulation.h"
#include "Tests/Simulation/TimeLineHand.h"

namespace {

using TimeLineHand::Key;
using TimeLineHand::Value;

class TimeLineTest : public testing::Test {
protected:
    void SetUp() override {
        simulation_.Send(kTogglePause);
        ASSERT_TRUE(WaitUntil([this] { return TakeState(Portal()).time > 3e6; }));
        simulation_.Send(kTogglePause);
        simulation_.Settle();
        now_ = TakeState(Portal());
        ASSERT_TRUE(WaitUntil([] { return !IsPast(); }));
    }

    static bool IsPast() { return Value().starts_with("Past: "); }
    static bool IsNow() { return Value().starts_with("Now: "); }
    EpochPortal* Portal() { return simulation_.Portal(); }
    int32 Steps() { return Portal()->GetUndoChain()->ExecutedCount(); }
    // As the first display has it.
    ThreeVector PlaceOf(int32 body) {
        TrajectoryView* const view = simulation_.FirstDisplay()->View();
        const ViewLock lock(view);
        return view->Cache().LastPosition(body);
    }
    ThreeVector PlaceNow(std::size_t body) { return now_.Position(body); }
    BView* Box() {
        const BAutolock lock(simulation_.window);
        return simulation_->FindView("Body Settings");
    }
    EntryHand Fields() { return EntryHand(Box()); }
    const AbEpoch* Focus() {
        const ReadGuard guard(Portal());
        return Portal()->FocusEpoch();
    }

    TestHost host_;
    TestSimulation simulation_{&host_};
    SystemState now_;
};

}  // namespace

TEST_F(TimeLineTest, MouseAndKeysMoveTheMomentThatEverythingShows) {
    const std::string before = Fields().Text("Position X:");
    ASSERT_EQ(PlaceOf(1), PlaceNow(1));
    TimeLineHand::Click(0.4);
    ASSERT_TRUE(WaitUntil([] { return IsPast(); }));
    ASSERT_TRUE(WaitUntil([&] { return PlaceOf(1) != PlaceNow(1); }));
    EXPECT_TRUE(
        WaitUntil([&] { return simulation_.Message().starts_with("Looking at the past"); }));
    EXPECT_TRUE(WaitUntil([&] { return Fields().Text("Position X:") != before; }));
    const std::string clicked = Value();

    TimeLineHand::Drag(0.4, 0.8);
    EXPECT_TRUE(WaitUntil([&] { return Value() != clicked; }));
    const std::string dragged = Value();
    for (const Key key : {Key::kLeft, Key::kShiftLeft, Key::kRight, Key::kHome}) {
        const ThreeVector was = PlaceOf(1);
        TimeLineHand::Press(key);
        EXPECT_TRUE(WaitUntil([&] { return !(PlaceOf(1) == was); })) << static_cast<int>(key);
    }
    EXPECT_EQ(Value(), "Past: 0.00000 yr");
    // It plays until it is back at the end.
    TimeLineHand::Press(Key::kForward);
    EXPECT_TRUE(WaitUntil([] { return Value() != "Past: 0.00000 yr"; }));
    TimeLineHand::Press(Key::kEnd);
    EXPECT_TRUE(WaitUntil([] { return !IsPast(); }));
    EXPECT_TRUE(WaitUntil([&] { return PlaceOf(1) == PlaceNow(1); }));
    EXPECT_TRUE(WaitUntil([&] { return Fields().Text("Position X:") == before; }));
    EXPECT_TRUE(WaitUntil([&] { return simulation_.Message().empty(); }));
}

TEST_F(TimeLineTest, AnEditOfThePastBeginsABranchAndNothingElseDoes) {
    const int32 steps = Steps();
    const AbEpoch* const run = Focus();
    TimeLineHand::Click(0.5);
    ASSERT_TRUE(WaitUntil([] { return IsPast(); }));
    // What was not typed is not committed, however often it is asked for.
    Portal()->CommitChanges();
    const std::string clicked = Value();
    TimeLineHand::Click(0.3);
    ASSERT_TRUE(WaitUntil([&] { return IsPast() && Value() != clicked; }));
    TimeLineHand::Click(0.5);
    ASSERT_TRUE(WaitUntil([&] { return Value() == clicked; }));
    EXPECT_EQ(Steps(), steps);
    EXPECT_EQ(TakeState(Portal()).positions, now_.positions);

    EntryHand::WaitUntilActive(Box());
    Fields().Enter("Mass:", "7");
    ASSERT_TRUE(WaitUntil([&] { return Steps() == steps + 2; }));
    ASSERT_TRUE(WaitUntil([] { return !IsPast(); }));
    {
        const ReadGuard guard(Portal());
        EXPECT_EQ(Portal()->FocusEpoch()->Parent(), run->Parent());
    }
    EXPECT_LT(TakeState(Portal()).time, now_.time);
    // The edit, and then the branch.
    simulation_.Send(kUndo);
    EXPECT_NE(Focus(), run);
    simulation_.Send(kUndo);
    EXPECT_EQ(Focus(), run);
    EXPECT_EQ(TakeState(Portal()).positions, now_.positions);
}

// A body that was put elsewhere by hand, now and in the past.
TEST_F(TimeLineTest, AHandEditsAsTypingDoes) {
    const int32 steps = Steps();
    const int64 body = Portal()->BodiesInMassOrder()[1]->ID();
    const auto place = [&](double x) {
        BMessage message(kPlaceBody);
        message.AddInt64(kBodyIDField, body);
        const double to[] = {x, 2e9, 3e9};
        message.AddDoubles(kPlaceField, to, 3);
        simulation_.Send(message);
    };
    const auto x = [&] { return TakeState(Portal()).Position(1).x; };
    place(1e9);
    ASSERT_TRUE(WaitUntil([&] { return Steps() == steps + 1 && x() == 1e9; }));
    simulation_.Send(kUndo);
    ASSERT_TRUE(WaitUntil([&] { return Steps() == steps && x() != 1e9; }));
    TimeLineHand::Click(0.5);
    ASSERT_TRUE(WaitUntil([] { return IsPast(); }));
    place(1e9);
    ASSERT_TRUE(WaitUntil([&] { return Steps() == steps + 2 && x() == 1e9; }));
    EXPECT_LT(TakeState(Portal()).time, now_.time);
}

// It can be chosen at a moment when it was still there, and what is typed is for it.
TEST_F(TimeLineTest, WhatHasMergedSinceIsEditedInThePast) {
    EntryHand::WaitUntilActive(Box());
    Fields().Choose("Edit:", "BoskVeld");
    for (const char* const line : {"Velocity Vx:", "Velocity Vy:", "Velocity Vz:"}) {
        ASSERT_TRUE(WaitUntil([&] { return Fields().IsEnabled(line); }));
        Fields().Enter(line, "0");
    }
    simulation_.Send(kTogglePause);
    const auto bodies = [this] { return TakeState(Portal()).CountBodies(); };
    ASSERT_TRUE(WaitUntil([&] { return bodies() == 1; }));
    TimeLineHand::Click(0.5);
    ASSERT_TRUE(WaitUntil([] { return IsPast(); }));
    ASSERT_TRUE(WaitUntil([&] { return Fields().CountChoices("Edit:") == 2; }));
    Fields().Choose("Edit:", "BoskVeld");
    ASSERT_TRUE(WaitUntil([&] { return Fields().Text("Name:") == "BoskVeld"; }));
    Fields().Enter("Velocity Vy:", "20 km/s");
    ASSERT_TRUE(WaitUntil([] { return !IsPast(); }));
    ASSERT_TRUE(WaitUntil([&] { return bodies() == 2; }));
    const ReadGuard guard(Portal());
    EXPECT_EQ(std::string(Portal()->FocusSystem()->Name()), "BoskVeld");
    EXPECT_NEAR(Portal()->FocusSystem()->Velocity().y, 20e3, 1e-6);
}

TEST_F(TimeLineTest, GoInThePastBranchesAndRuns) {
    const int32 steps = Steps();
    TimeLineHand::Press(Key::kHome);
    TimeLineHand::Press(Key::kRight);
    ASSERT_TRUE(WaitUntil([] { return IsPast() && Value() != "Past: 0.00000 yr"; }));
    TimeLineHand::Press(Key::kSpace);
    ASSERT_TRUE(WaitUntil([&] { return simulation_.GoLabel() == "Pause"; }));
    EXPECT_EQ(Steps(), steps + 2);
    // Winding back stops it.
    ASSERT_TRUE(WaitUntil([&] { return TakeState(Portal()).time > 1e6; }));
    TimeLineHand::Click(0.5);
    ASSERT_TRUE(WaitUntil([&] { return simulation_.GoLabel() == "Go"; }));
    EXPECT_TRUE(WaitUntil([] { return IsPast(); }));

    const AbEpoch* const run = Focus();
    simulation_.Send(kBranchHere);
    EXPECT_EQ(Steps(), steps + 3);
    EXPECT_NE(Focus(), run);
    EXPECT_TRUE(WaitUntil([] { return IsNow(); })) << "the way to the branch is on the line";
    // Undo looks at what it undoes.
    simulation_.Send(kUndo);
    TimeLineHand::Click(0.5);
    ASSERT_TRUE(WaitUntil([] { return IsPast(); }));
    simulation_.Send(kUndo);
    EXPECT_TRUE(WaitUntil([] { return !IsPast(); }));
}

// Its runs are made again when they are wanted, or are there at once where they were saved.
TEST_F(TimeLineTest, ADocumentThatIsOpenedAgainCanBeWoundBack) {
    const BMessage plain = simulation_.SavedAs("Plain");
    EXPECT_FALSE(plain.HasName(SimulationDocument::kHistoryField));
    EXPECT_FALSE(simulation_.IsMarkedModified());
    simulation_.Send(kSaveHistory);
    EXPECT_TRUE(simulation_.IsMarkedModified());
    const BMessage withRuns = simulation_.SavedAs("With Runs");
    EXPECT_TRUE(withRuns.HasName(SimulationDocument::kHistoryField));
    simulation_.Quit();
    for (const BMessage& record : {plain, withRuns}) {
        TestSimulation again(&host_, record, "Again");
        ASSERT_TRUE(WaitUntil([] { return IsNow(); }));
        TimeLineHand::Click(0.5);
        EXPECT_TRUE(WaitUntil([] { return IsPast(); }));
        TimeLineHand::Press(Key::kEnd);
        EXPECT_TRUE(WaitUntil([] { return IsNow(); }));
        // At the pace that Auto would choose, though nothing has run yet.
        again.Portal()->GetCalculator()->SetPace(Pace::Auto());
        const double step = [&] {
            const ReadGuard guard(again.Portal());
            return AutoPace(again.Portal()->BodiesInMassOrder()) / MomentPlayer::kRate;
        }();
        TimeLineHand::Press(Key::kLeft);
        EXPECT_TRUE(WaitUntil([] { return IsPast(); }));
        constexpr double kYear = 365.25 * 86400.0;
        const double seen = std::strtod(Value().c_str() + std::strlen("Past: "), nullptr);
        EXPECT_NEAR(seen, (now_.time - step) / kYear, 0.1 * step / kYear) << Value();
        TimeLineHand::Press(Key::kEnd);
        EXPECT_TRUE(WaitUntil([] { return IsNow(); }));
        // Again, as it may have gaps; what there is to be seen stays.
        again.Send(kMakeRunAgain);
        TimeLineHand::Click(0.5);
        EXPECT_TRUE(WaitUntil([] { return IsPast(); }));
    }
}

// A gesture waits for the moment's bits, tells how far they are, and can be given up; then nothing
// has happened, and the next one waits again.
TEST(TimeLine, AGestureThatWaitsLongTellsHowLongAndIsGivenUp) {
    constexpr int32 kBodies = 2000;    // a step takes milliseconds
    constexpr double kReports = 60.0;  // before the first checkpoint behind the start
    TestHost host;
    TestSimulation simulation(&host);
    EpochPortal* const portal = simulation.Portal();
    {
        const WriteGuard guard(portal);
        auto* const epoch = dynamic_cast<Epoch*>(portal->FocusEpoch());
        epoch->SetOrder(4);
        for (int32 i = 0; i < kBodies; i++) {
            auto* const body = new Body("", 1000 + i, {}, {}, -2);
            body->SetM(1.0);
            body->SetPosition({1e13 + 1e11 * i, 1e12 * (i % 7), 0.0});
            epoch->RootSystem()->AddChild(body);
        }
    }
    portal->TellObservers(kSystemAdded);
    simulation.Settle();
    const auto& calculator = dynamic_cast<const Calculator&>(*portal->GetCalculator());
    simulation.Send(kTogglePause);
    ASSERT_TRUE(WaitUntil([&] { return calculator.StepsTaken() >= kReports; }));
    simulation.Send(kTogglePause);
    simulation.Settle();
    const auto focus = [&] {
        const ReadGuard guard(portal);
        return portal->FocusEpoch();
    };
    const AbEpoch* const run = focus();
    const auto tells = [&](const char* what) {
        return simulation.Message().find(what) != std::string::npos;
    };
    TimeLineHand::Click(0.9 * kReports / static_cast<double>(calculator.StepsTaken()));
    ASSERT_TRUE(WaitUntil([] { return Value().starts_with("Past: "); })) << Value();
    simulation.Send(kBranchHere);
    EXPECT_TRUE(WaitUntil([&] { return tells(" %"); })) << simulation.Message();
    TimeLineHand::Press(Key::kEscape);
    EXPECT_TRUE(WaitUntil([&] { return !tells(" %"); }));
    simulation.Settle();
    EXPECT_EQ(focus(), run);
    EXPECT_TRUE(Value().starts_with("Past: "));
    simulation.Send(kBranchHere);
    EXPECT_TRUE(WaitUntil([&] { return focus() != run; })) << "when it is computed";
}
