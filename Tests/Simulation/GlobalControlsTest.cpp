// The box in which a run is controlled, and the window of the animation, by hand.
#include "AnimationWindow.h"
#include "AppDefs.h"
#include "ChangeFlags.h"
#include "SettingsFixture.h"

class GlobalControls : public SettingsFixture {
protected:
    double Cutoff() {
        return Ask([](const AbEpoch& epoch) { return epoch.Cutoff(); });
    }

    static constexpr const char* kCutoff = "Correction Cutoff";
    static constexpr const char* kSmaller = "Ignore corrections smaller than";
};

TEST_F(GlobalControls, TheCutoffGoesThroughRoundNumbersOrAnyThatIsTyped) {
    EXPECT_EQ(hand.Text(kSmaller), "1e-11");
    const int place = hand.Knob(kCutoff);
    hand.HoldRightArrow(kCutoff, 0);
    Settle();
    EXPECT_EQ(Cutoff(), 1.3e-11);
    EXPECT_EQ(hand.Text(kSmaller), "1.3e-11");
    hand.HoldRightArrow(kCutoff, 8);
    Settle();
    EXPECT_EQ(Cutoff(), 1e-10);
    EXPECT_EQ(CountEdits(), 2);  // a key that is held is one edit

    hand.Grab(kCutoff, place + 20, place - 10);
    Settle();
    EXPECT_EQ(hand.Text(kSmaller), "1e-12");
    EXPECT_EQ(Cutoff(), 1e-10);
    hand.LetGo(kCutoff);
    Settle();
    EXPECT_EQ(Cutoff(), 1e-12);
    EXPECT_EQ(CountEdits(), 3);

    hand.Type(kSmaller, "1.1e-11");
    hand.Enter(kSmaller);
    Settle();
    EXPECT_EQ(Cutoff(), 1.1e-11);
    EXPECT_EQ(hand.Knob(kCutoff), place);
    // A touch moves nothing, though the knob stands beside the number.
    hand.Grab(kCutoff, place, place);
    hand.LetGo(kCutoff);
    Settle();
    EXPECT_EQ(Cutoff(), 1.1e-11);
    // Refused ones leave the knob where it was.
    for (const char* text : {"0.001", "0", "-1e-9", "fast"}) {
        hand.Type(kSmaller, text);
        hand.Enter(kSmaller);
        Settle();
        EXPECT_EQ(hand.Text(kSmaller), "1.1e-11");
        EXPECT_TRUE(hand.IsRefused(kSmaller));
    }
    for (int i = 0; i < 4; i++)
        Undo();
    EXPECT_EQ(Cutoff(), 1e-11);
    EXPECT_EQ(hand.Knob(kCutoff), place);
}

TEST_F(GlobalControls, ARefreshLeavesTheKnobInTheHand) {
    hand.Grab(kCutoff, 20, 30);
    Settle();
    Change([](AbEpoch& epoch) { epoch.SetCutoff(1e-6); }, kEpochSettingsChanged);
    EXPECT_EQ(hand.Knob(kCutoff), 30);
    hand.LetGo(kCutoff);
    Settle();
    EXPECT_EQ(Cutoff(), 1e-12);
    // Disabled in the hand: what it was about to do is forgotten.
    hand.Grab(kCutoff, 20, 31);
    Settle();
    InWindow([this] { window->global->EnableRunControls(false); });
    hand.LetGo(kCutoff);
    Settle();
    EXPECT_EQ(Cutoff(), 1e-12);
    EXPECT_EQ(hand.Text(kSmaller), "1e-12");
}

TEST_F(GlobalControls, TimeOrderAndCenterOfMassAreEdits) {
    hand.Type("Time:", "12 dy");
    hand.Enter("Time:");
    Settle();
    EXPECT_EQ(Ask([](const AbEpoch& epoch) { return epoch.Time(); }), 12 * 86400.0);
    EXPECT_EQ(hand.Chosen("Time: unit"), "dy");
    hand.Choose("Order:", "3");
    Settle();
    EXPECT_EQ(Ask([](const AbEpoch& epoch) { return epoch.Order(); }), 3);
    hand.Click("Upon \"Go\"");
    Settle();
    EXPECT_FALSE(Ask([](const AbEpoch& epoch) { return epoch.COMOnGo(); }));
    EXPECT_EQ(CountEdits(), 3);
    for (int i = 0; i < 3; i++)
        Undo();
    EXPECT_EQ(hand.Chosen("Order:"), "4");
    EXPECT_EQ(hand.Text("Time:"), "0");
    EXPECT_TRUE(Ask([](const AbEpoch& epoch) { return epoch.COMOnGo(); }));
}

TEST_F(GlobalControls, RestsDuringARunButForPause) {
    InWindow([this] {
        window->global->EnableRunControls(false);
        window->global->ShowGoPause("Pause", true);
    });
    for (const char* widget : {"Time:", "Order:", "Upon \"Go\"", " Now ", kCutoff})
        EXPECT_FALSE(hand.IsEnabled(widget)) << widget;
    EXPECT_TRUE(hand.IsEnabled("Pause"));
    InWindow([this] { window->global->ShowGoPause("Wait", false); });
    EXPECT_FALSE(hand.IsEnabled("Wait"));
}

TEST_F(GlobalControls, TheAnimationWindowSetsTheCalculator) {
    auto* const animation = new AnimationWindow(portal, window, TestContext());
    animation->SetTitleFor("Tests");
    EXPECT_EQ(animation->Title(), "Animation options for Tests");
    animation->Show();
    EntryHand::WaitUntilActive(animation->ChildAt(0));
    ::Settle(animation);
    const EntryHand user(animation->ChildAt(0));
    TaylorCalculator& calculator = *document.GetCalculator();
    EXPECT_EQ(user.Text("Draw trails with lines up to"), "2");
    EXPECT_EQ(user.Text("Update screen"), "80");
    user.HoldRightArrow("Trail Smoothness", 1);
    user.HoldRightArrow("Drawing Frequency", 0);  // choppier
    ::Settle(animation);
    EXPECT_EQ(calculator.SegmentLength(), 4);
    EXPECT_EQ(calculator.UpdatesPerSecond(), 70);
    for (const char* text : {"2.5", "0", "many"}) {
        user.Type("Update screen", text);
        user.Enter("Update screen");
        ::Settle(animation);
        EXPECT_EQ(user.Text("Update screen"), "70");
    }
    // Half typed when the close box is pressed: hidden, and committed with everything else.
    user.Type("Draw trails with lines up to", "33");
    EXPECT_EQ(animation->PostMessage(B_QUIT_REQUESTED), B_OK);
    ::Settle(animation);
    EXPECT_TRUE(animation->IsHidden());
    portal->CommitChanges();
    EXPECT_EQ(calculator.SegmentLength(), 33);
    for (int i = 0; i < 3; i++)
        Undo();
    EXPECT_EQ(calculator.UpdatesPerSecond(), 80);
    ::Settle(animation);
    EXPECT_EQ(user.Text("Draw trails with lines up to"), "33") << "nobody sees it";
    animation->Show();
    ::Settle(animation);
    EXPECT_EQ(user.Text("Draw trails with lines up to"), "2");
    if (animation->Lock()) animation->Quit();
}
