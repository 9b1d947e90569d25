#include "Simulation/Document/RunControl.h"

#include <gtest/gtest.h>

#include "Model/Epochs/Epoch.h"
#include "Model/Epochs/EpochLimits.h"
#include "Simulation/Document/RunControlView.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

// Writes down what a window is told, and checks that it is locked meanwhile.
class RecordingView : public RunControlView {
public:
    std::string Take() { return std::exchange(calls_, ""); }
    [[nodiscard]] bool IsLocked() const { return locks_ > 0; }

    void LockWindow() override { locks_++; }
    void UnlockWindow() override { locks_--; }
    void ShowGoPause(Offer offer) override {
        Add(offer == Offer::kGo ? "go" : offer == Offer::kPause ? "pause" : "wait");
    }
    void EnableRunControls(bool enable) override { Add(enable ? "enable" : "disable"); }
    void SetNonPhysicalBodyValues() override { Add("nonphysical"); }
    void SetPhysicalBodyValues() override { Add("physical"); }
    void SetEpochValues() override { Add("epoch"); }
    void SetSimValues() override { Add("simulation"); }
    void RunStarting() override { Add("starting"); }
    void RunStopped() override { Add("stopped"); }

private:
    void Add(const char* call) {
        EXPECT_TRUE(IsLocked());
        if (!calls_.empty()) calls_ += ' ';
        calls_ += call;
    }

    std::string calls_;
    int locks_ = 0;
};

struct RunControlTest : testing::Test {
    RunControlTest() { EXPECT_FALSE(document.Load(PlanetRecord()).Failed()); }
    AbEpoch* Focus() { return document.Portal()->FocusEpoch(); }

    SimulationDocument document{nullptr};
    RecordingView view;
    RunControl control{document.Portal(), document.GetCalculator(), &view};
};

TEST_F(RunControlTest, GoAndPauseTellTheWindowInOrder) {
    control.TogglePause();
    EXPECT_EQ(view.Take(), "nonphysical physical epoch simulation disable pause starting");
    EXPECT_EQ(control.PauseCount(), 0);
    EXPECT_FALSE(control.UserPaused());
    EXPECT_TRUE(control.HasRun());
    control.TogglePause();
    EXPECT_EQ(view.Take(), "wait nonphysical enable go stopped");
    EXPECT_EQ(control.PauseCount(), 1);
    EXPECT_TRUE(control.UserPaused());
    EXPECT_FALSE(view.IsLocked());
}

TEST_F(RunControlTest, ARunIsLoggedBelowTheFocusAndKept) {
    AbEpoch* const genesis = Focus();
    const ThreeVector before = genesis->SystemFromID(1)->Position();
    StepRunner runner(&document);
    for (int run = 1; run <= 2; run++) {
        AbEpoch* const start = Focus();
        const double time = start->Time();
        runner.Run(&control, 5);
        EXPECT_EQ(Focus()->Parent(), start);
        EXPECT_FALSE(start->Writeable());
        EXPECT_FALSE(Focus()->Writeable());
        EXPECT_EQ(start->Time(), time);
        EXPECT_GT(Focus()->Time(), time);
    }
    EXPECT_EQ(genesis->SystemFromID(1)->Position(), before);
    EXPECT_EQ(Outline(document.Root()), "Genesis(Genesis(Genesis))");
    document.GetUndoChain()->Undo();
    EXPECT_EQ(Outline(document.Root()), "Genesis(Genesis)");
}

TEST_F(RunControlTest, HeldRunsDoNotStart) {
    control.SetHold(true);
    control.UnPause();
    EXPECT_EQ(control.PauseCount(), 0);
    EXPECT_FALSE(control.HasRun());
    EXPECT_EQ(view.Take(), "");
}

TEST_F(RunControlTest, CenterOfMassMovesOnlyOnRequest) {
    StepRunner runner(&document);
    Focus()->SetCOMOnGo(false);
    runner.Run(&control, 1);
    EXPECT_GT(Focus()->SystemFromID(0)->Position().x, 9e8);
    Focus()->SetCOMOnGo(true);
    runner.Run(&control, 1);
    EXPECT_LT(Focus()->SystemFromID(0)->Position().x, 1e6);
}

// Of what touches here nobody was told there, though the bodies have the same identifiers.
TEST_F(RunControlTest, APairThatWasPassedInOneEpochStopsTheRunInAnother) {
    for (const int32 order : {4, 16}) {
        SCOPED_TRACE(order);
        const auto first = MakePlanetEpoch("first"), second = MakePlanetEpoch("second");
        for (Epoch* const epoch : {first.get(), second.get()}) {
            epoch->SetOrder(order);
            epoch->SetOnContact(kContactStops);
            epoch->SystemFromID(0)->SetRadius(1e12);
        }
        SimulationDocument both(nullptr);
        ASSERT_FALSE(both.Load(RecordOf({first.get(), second.get()})).Failed());
        RunControl run(both.Portal(), both.GetCalculator(), &view);
        StepRunner runner(&both);
        const auto countSteps = [&] {
            const int64 before = both.GetCalculator()->StepsTaken();
            runner.Run(&run, 5);
            return both.GetCalculator()->StepsTaken() - before;
        };
        for (const int32 place : {0, 1}) {
            both.Portal()->SetEpochTo(both.Root()->ChildAt(place));
            EXPECT_EQ(countSteps(), 0) << "the run stops where they touch";
            EXPECT_EQ(countSteps(), 5) << "and goes on";
        }
    }
}

}  // namespace
