// The box in which a run is controlled, and the window of the animation, by hand.
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Platform/Application/AppDefs.h"
#include "Simulation/Settings/AnimationWindow.h"
#include "Simulation/Settings/GlobalControlsBox.h"
#include "Tests/Simulation/SettingsFixture.h"

class GlobalControls : public SettingsFixture {
protected:
    double Cutoff() {
        return Ask([](const AbEpoch& epoch) { return epoch.Cutoff(); });
    }
    void LetGo() {
        hand.LetGo(kCutoff);
        Settle();
    }

    static constexpr const char* kCutoff = "Correction Cutoff";
    static constexpr const char* kSmaller = "Ignore corrections smaller than";
};

TEST_F(GlobalControls, TheCutoffGoesThroughRoundNumbersOrAnyThatIsTyped) {
    const int place = hand.Knob(kCutoff);
    hand.HoldRightArrow(kCutoff, 0);
    Settle();
    EXPECT_EQ(Cutoff(), 1.3e-11);
    hand.HoldRightArrow(kCutoff, 8);
    Settle();
    EXPECT_EQ(Cutoff(), 1e-10);
    EXPECT_EQ(CountEdits(), 2) << "a key that is held is one edit";

    hand.Grab(kCutoff, place + 20, place - 10);
    Settle();
    EXPECT_EQ(hand.Text(kSmaller), "1e-12");
    EXPECT_EQ(Cutoff(), 1e-10);
    LetGo();
    EXPECT_EQ(Cutoff(), 1e-12);
    EXPECT_EQ(CountEdits(), 3);

    Enter(kSmaller, "1.1e-11");
    EXPECT_EQ(Cutoff(), 1.1e-11);
    EXPECT_EQ(hand.Knob(kCutoff), place);
    // A touch moves nothing, though the knob stands beside the number.
    hand.Grab(kCutoff, place, place);
    LetGo();
    EXPECT_EQ(Cutoff(), 1.1e-11);
    for (const char* text : {"0.001", "0", "-1e-9", "fast"}) {
        Enter(kSmaller, text);
        EXPECT_TRUE(hand.IsRefused(kSmaller));
        hand.Escape(kSmaller);
        EXPECT_EQ(hand.Text(kSmaller), "1.1e-11");
    }
    EXPECT_EQ(Cutoff(), 1.1e-11);
    EXPECT_EQ(hand.Knob(kCutoff), place);
}

TEST_F(GlobalControls, OrderAndContactsAreChosenByTheirWordsAndUndone) {
    const auto order = [this] { return Ask([](const AbEpoch& epoch) { return epoch.Order(); }); };
    const auto contact = [this] {
        return Ask([](const AbEpoch& epoch) { return epoch.OnContact(); });
    };
    Choose("Order:", "16: quick and exact");
    EXPECT_EQ(order(), 16);
    Choose("When bodies touch:", "they pass");
    EXPECT_EQ(contact(), kContactPasses);
    Choose("When bodies touch:", "the run stops");
    EXPECT_EQ(contact(), kContactStops);
    EXPECT_EQ(CountEdits(), 3);
    Undo();
    EXPECT_EQ(contact(), kContactPasses);
}

TEST_F(GlobalControls, ARefreshLeavesTheKnobInTheHand) {
    hand.Grab(kCutoff, 20, 30);
    Settle();
    Change([](AbEpoch& epoch) { epoch.SetCutoff(1e-6); }, kEpochSettingsChanged);
    EXPECT_EQ(hand.Knob(kCutoff), 30);
    LetGo();
    EXPECT_EQ(Cutoff(), 1e-12);
    // Disabled in the hand: what it was about to do is forgotten.
    hand.Grab(kCutoff, 20, 31);
    Settle();
    EnableRunControls<GlobalControlsBox>("Global Controls", false);
    LetGo();
    EXPECT_EQ(Cutoff(), 1e-12);
    EXPECT_EQ(hand.Text(kSmaller), "1e-12");
}

TEST_F(GlobalControls, RestsDuringARunButForPause) {
    simulation.Send(kTogglePause);
    Settle();
    for (const char* widget : {"Time:", "Order:", "Upon \"Go\"", " Now ", kCutoff})
        EXPECT_FALSE(hand.IsEnabled(widget)) << widget;
    EXPECT_TRUE(hand.IsEnabled("Pause"));
    simulation.Send(kTogglePause);
    Settle();
    EXPECT_TRUE(hand.IsEnabled("Time:"));
}

TEST_F(GlobalControls, TheAnimationWindowSetsTheCalculator) {
    constexpr const char* kLines = "Draw trails with lines up to";
    constexpr const char* kUpdates = "Update screen";
    auto* const animation = new AnimationWindow(portal, simulation.window, TestContext());
    animation->Show();
    EntryHand::WaitUntilActive(animation->ChildAt(0));
    ::Settle(animation);
    const EntryHand user(animation->ChildAt(0));
    const AbCalculator& calculator = *portal->GetCalculator();
    user.HoldRightArrow("Trail Smoothness", 1);
    user.HoldRightArrow("Drawing Frequency", 0);  // choppier
    ::Settle(animation);
    EXPECT_EQ(calculator.SegmentLength(), 4);
    EXPECT_EQ(calculator.UpdatesPerSecond(), 70);
    for (const char* text : {"2.5", "0", "many"}) {
        user.Enter(kUpdates, text);
        ::Settle(animation);
        EXPECT_TRUE(user.IsRefused(kUpdates));
        user.Escape(kUpdates);
        EXPECT_EQ(user.Text(kUpdates), "70");
    }
    // Half typed when the close box is pressed: hidden, and committed with everything else.
    user.Type(kLines, "33");
    EXPECT_EQ(animation->PostMessage(B_QUIT_REQUESTED), B_OK);
    ::Settle(animation);
    EXPECT_TRUE(animation->IsHidden());
    portal->CommitChanges();
    EXPECT_EQ(calculator.SegmentLength(), 33);
    Undo();
    animation->Show();
    ::Settle(animation);
    EXPECT_EQ(user.Text(kLines), "4") << "it reads when it is shown";
    if (animation->Lock()) animation->Quit();
}
