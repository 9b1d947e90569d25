// Runs that stop by themselves, and the dialog that asks for them.
#include "Simulation/Document/RunTarget.h"

#include <gtest/gtest.h>

#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Kernel/OS.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Simulation/TestSimulation.h"

namespace {

struct RunTargetTest : testing::Test {
    double Time() {
        const ReadGuard guard(simulation.Portal());
        return simulation.Portal()->FocusEpoch()->Time();
    }
    double Unit() {
        const ReadGuard guard(simulation.Portal());
        return simulation.Portal()->FocusEpoch()->TimeUval();
    }
    // A minute is for ever.
    void WaitForEnd() {
        for (int i = 0; i < 600 && simulation.GoLabel() != "Go"; i++)
            snooze(100'000);
        ASSERT_EQ(simulation.GoLabel(), "Go");
        simulation.Settle();
    }

    TestHost host;
    TestSimulation simulation{&host};
};

TEST_F(RunTargetTest, TheDialogRunsForATimeAndGoForgetsIt) {
    simulation.Portal()->GetCalculator()->SetPace(Pace());
    simulation.Send(MenuArchives::kRequestRun);
    UserHand::WaitForWindow("Run To");
    EXPECT_EQ(UserHand::EntryText("Run To"), "1 yr");
    UserHand::Press("Run To", UserHand::Key::kEnter);
    UserHand::WaitForWindow("Run To", false);
    WaitForEnd();
    const double end = Time();
    EXPECT_GE(end, Unit());
    EXPECT_LT(end, 2.0 * Unit());
    EXPECT_NE(simulation.Message().find("where it was to stop"), std::string::npos);

    simulation.Send(kTogglePause);
    for (int i = 0; i < 600 && Time() < 2.5 * Unit(); i++)
        snooze(100'000);
    EXPECT_GE(Time(), 2.5 * Unit());
    simulation.Send(kTogglePause);

    // A time that is over is none to run until.
    const double now = Time();
    RunTarget past;
    past.kind = RunTarget::Kind::kUntil;
    past.time = end;
    simulation.Send(past.ToMessage());
    EXPECT_EQ(simulation.GoLabel(), "Go");
    EXPECT_EQ(Time(), now);
}

TEST_F(RunTargetTest, BodiesThatCrossAPlaneEndTheRun) {
    simulation.Portal()->GetCalculator()->SetPace(Pace());
    RunTarget target;
    target.kind = RunTarget::Kind::kPlaneX;
    target.body = 1;
    target.other = 0;
    simulation.Send(target.ToMessage());
    WaitForEnd();
    const ReadGuard guard(simulation.Portal());
    const AbEpoch& epoch = *simulation.Portal()->FocusEpoch();
    const ThreeVector way = epoch.SystemFromID(1)->Position() - epoch.SystemFromID(0)->Position();
    EXPECT_LT(std::abs(way.x), 0.01 * std::abs(way.y));
}

}  // namespace

// Whoever opens a document that says nothing sees it as ever.
TEST(NewSimulation, HasAPaceOfItsOwn) {
    TestHost host;
    const TestSimulation fresh(&host);
    EXPECT_TRUE(fresh.Portal()->GetCalculator()->GetPace().IsAuto());
    const TestSimulation opened(&host, TestResources().NewSimulation(), "opened");
    EXPECT_TRUE(opened.Portal()->GetCalculator()->GetPace().IsUnlimited());
}
