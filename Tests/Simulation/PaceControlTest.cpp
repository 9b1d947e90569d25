// The dial of the pace, by hand.
#include "Interface Widgets/PaceControl.h"

#include <gtest/gtest.h>

#include "Model/Sharing/AbCalculator.h"
#include "Tests/Simulation/SettingsFixture.h"

class PaceDial : public SettingsFixture {
protected:
    Pace InForce() const { return portal->GetCalculator()->GetPace(); }
    double Seconds() const { return InForce().Number(); }
    // With a field in front of it or none.
    void Press(char key) {
        hand.PressKey(key);
        Settle();
    }

    static constexpr const char* kLine = "Pace: time of the simulation in a second";
    static constexpr const char* kKnob = "Pace";
    static constexpr double kDay = 86400.0;
};

TEST_F(PaceDial, TakesTextsWithUnitsAndRefusesWhatIsNoPace) {
    EntryHand::WaitUntilActive(root);
    Enter(kLine, "1 month");
    EXPECT_NEAR(Seconds(), 30.43685 * kDay, 1.0);
    Enter(kLine, "12 hr");
    EXPECT_EQ(Seconds(), kDay / 2);
    EXPECT_EQ(hand.Text(kLine), "12 hr");
    Enter(kLine, "6");  // of the unit that is shown
    EXPECT_EQ(Seconds(), kDay / 4);
    for (const char* none : {"0.5 s", "-1 dy", "1e16 s", "3 km", "quick"}) {
        Enter(kLine, none);
        EXPECT_TRUE(hand.IsRefused(kLine)) << none;
        hand.Escape(kLine);
        EXPECT_EQ(Seconds(), kDay / 4);
    }
    Enter(kLine, "max");
    EXPECT_TRUE(InForce().IsUnlimited());
    Enter(kLine, "Auto");
    EXPECT_TRUE(InForce().IsAuto());
    EXPECT_EQ(CountEdits(), 0) << "a pace is no edit";
}

TEST_F(PaceDial, KnobSwitchAndKeysMoveIt) {
    EntryHand::WaitUntilActive(root);
    Enter(kLine, "1 dy");
    hand.Grab(kKnob, 120, 60);
    Settle();
    EXPECT_DOUBLE_EQ(Seconds(), 1e6) << "seen while the knob is held";
    hand.LetGo(kKnob);
    Settle();
    hand.HoldRightArrow(kKnob, 200);
    Settle();
    EXPECT_TRUE(InForce().IsUnlimited()) << "at the right end";
    EXPECT_EQ(hand.Text(kLine), "max");

    hand.Click("Auto");
    Settle();
    EXPECT_TRUE(InForce().IsAuto());
    const std::string text = hand.Text(kLine);
    hand.Click("Auto");
    Settle();
    EXPECT_FALSE(InForce().IsAuto());
    EXPECT_EQ(hand.Text(kLine), text) << "it stays what it came to";

    Enter(kLine, "1 dy");
    hand.HoldRightArrow(kKnob, 0);  // the keyboard is with no field
    Settle();
    const double before = Seconds();
    Press('[');
    EXPECT_DOUBLE_EQ(Seconds(), before / 2.0);
    Press(']');
    Press(']');
    EXPECT_DOUBLE_EQ(Seconds(), before * 2.0);
    hand.Type("Name:", "a");
    Press('[');
    EXPECT_EQ(hand.Text("Name:"), "a[") << "a letter of the field's";
    EXPECT_DOUBLE_EQ(Seconds(), before * 2.0);
}
