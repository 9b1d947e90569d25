// What the window tells of how far a run can be believed, as a user asks for it.
#include "Simulation/TrustControl.h"

#include <gtest/gtest.h>

#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Kernel/OS.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Platform/WaitUntil.h"
#include "Tests/Simulation/LabelHand.h"
#include "Tests/Simulation/TestSimulation.h"

namespace {

constexpr const char* kTitle = "How Exact Is This?";

struct TrustControlTest : testing::Test {
    std::string Figures() {
        simulation.Settle();
        return simulation.Text("Figures");
    }
    void RunFor(bigtime_t time) {
        simulation.Send(kTogglePause);
        snooze(time);
        simulation.Send(kTogglePause);
    }
    int32 Runs() {
        const ReadGuard guard(simulation.Portal());
        return simulation.Portal()->FocusEpoch()->Parent()->CountChildren();
    }
    TestHost host;
    TestSimulation simulation{&host};
};

}  // namespace

TEST_F(TrustControlTest, AClickOnTheFiguresExplainsThem) {
    RunFor(300'000);
    EXPECT_NE(Figures().find("energy kept to 1"), std::string::npos) << Figures();
    ClickLabel(Figures());
    UserHand::WaitForWindow(kTitle);
}

TEST_F(TrustControlTest, AMoreExactRunIsOneStepAndTheBadgeTellsWhatItFound) {
    RunFor(300'000);
    const AbEpoch* const focus = simulation.Portal()->FocusEpoch();
    EXPECT_EQ(Figures().find("true to"), std::string::npos);
    simulation.Send(kRerunExactly);
    UserHand::WaitForWindow(kTitle);
    EXPECT_EQ(Runs(), 2);
    EXPECT_EQ(simulation.Portal()->FocusEpoch(), focus) << "nobody has asked to go there";
    EXPECT_NE(Figures().find("true to "), std::string::npos) << Figures();
    simulation.Send(kUndo);
    EXPECT_EQ(Runs(), 1);
    simulation.Send(kRedo);
    EXPECT_EQ(Runs(), 2);
    // It is a run like others, which goes on in its own order.
    BMessage saved = simulation.SavedAs("Two");
    TestSimulation again(&host, saved, "Again");
    EXPECT_EQ(again.CountBodies(), simulation.CountBodies());
}

TEST_F(TrustControlTest, WhatGoesOnIsEndedByTheSameItemAndByEscape) {
    simulation.Send(kLookForChaos);
    EXPECT_EQ(simulation.Message(), "No run leads here that could be made again.");
    simulation.Portal()->GetCalculator()->SetPace(Pace());  // so far that it takes its time
    RunFor(1'000'000);
    for (const uint32 end : {kLookForChaos, kStopMaking}) {
        simulation.Send(kLookForChaos);
        EXPECT_TRUE(simulation.Message().starts_with("Looking for chaos")) << simulation.Message();
        simulation.Send(end);
        EXPECT_EQ(simulation.Message(), "");
    }
    EXPECT_EQ(Runs(), 1);
}
