// Nothing in a simulation's window needs the mouse.
#include "DesktopTest.h"
#include "SampleDocument.h"

namespace {

constexpr double kAstronomicalUnit = 149597870660.0;
constexpr double kKilometre = 1000.0;
constexpr double kYear = 31556925.2;
constexpr double kKilogram = 6.672e-11;  // as a gravitational parameter

class KeyboardDesktopTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        if (desktop_) window_ = OpenExample("circumbinary");
    }
    // Goes on to the field and types; whoever comes to the next one has entered it.
    void Type(Field field, const std::string& text) {
        GoTo(window_, field);
        desktop_->Type(text);
    }
    void ChooseUnit(Field field, const std::string& letter) {
        GoTo(window_, field);
        desktop_->Press("space");
        desktop_->Press(letter);
    }
    // A menu and one of its items, both by their letters.
    void Choose(const std::string& menu, const std::string& item) {
        desktop_->Press(window_, "alt+" + menu);
        desktop_->Press(item);
    }

    Window window_;
};

}  // namespace

TEST_F(KeyboardDesktopTest, TheTabKeyGoesThroughAllFieldsInTheirOrder) {
    Type(kName, "Wanderer");
    Type(kMass, "5e24 kg");
    Type(kRadius, "70000 km");
    Type(kX, "1 AU");
    Type(kY, "2");
    Type(kZ, "-3");
    Type(kVx, "4 km/s");
    Type(kVy, "5");
    Type(kVz, "-6");
    Type(kTime, "2.5 yr");
    GoTo(window_, kUponGo);
    desktop_->Press("space");
    Type(kCutoff, "1e-9");
    GoTo(window_, kOrder);
    desktop_->Press("Up");
    // After the last one comes the first one, in which the next body is chosen.
    GoTo(window_, kEdit);
    desktop_->Press("Home");
    Save(window_);

    const auto document = Read(path_);
    const AbEpoch* const epoch = document->Portal()->FocusEpoch();
    EXPECT_EQ(epoch->Time(), 2.5 * kYear);
    EXPECT_FALSE(epoch->COMOnGo());
    EXPECT_EQ(epoch->Cutoff(), 1e-9);
    EXPECT_EQ(epoch->Order(), 3);
    const Body* const body = BodyNamed(document.get(), "Wanderer");
    ASSERT_NE(body, nullptr);
    EXPECT_DOUBLE_EQ(body->M(), 5e24 * kKilogram);
    EXPECT_EQ(body->Radius(), 70000 * kKilometre);
    const ThreeVector position = body->Position();
    EXPECT_EQ(position.x, kAstronomicalUnit);
    EXPECT_EQ(position.y, 2 * kAstronomicalUnit);
    EXPECT_EQ(position.z, -3 * kAstronomicalUnit);
    const ThreeVector velocity = body->Velocity();
    EXPECT_EQ(velocity.x, 4 * kKilometre);
    EXPECT_EQ(velocity.y, 5 * kKilometre);
    EXPECT_EQ(velocity.z, -6 * kKilometre);
    EXPECT_NE(document->Portal()->FocusSystem()->ID(), body->ID());
}

TEST_F(KeyboardDesktopTest, ButtonsListsAndTheSliderWorkWithKeys) {
    GoTo(window_, kTrailDisc);
    desktop_->Press("Return");
    ASSERT_TRUE(Comes("^Display options for "));
    desktop_->Press("ctrl+w");
    ASSERT_TRUE(desktop_->WaitForNoWindow("^Display options for "));
    // What is shown in another unit, or relative to something else, stays what it is.
    const auto before = Read(path_);
    ChooseUnit(kRadiusUnit, "k");
    GoTo(window_, kRelativeTo);
    desktop_->Press("End");
    ChooseUnit(kPositionUnit, "k");
    GoTo(window_, kSlider);
    desktop_->Press("Right");
    Save(window_);
    const auto changed = Read(path_);
    const Body* const was = BodyNamed(before.get(), "Planet");
    const Body* const is = BodyNamed(changed.get(), "Planet");
    EXPECT_EQ(is->RadiusUval(), kKilometre);
    EXPECT_EQ(is->PositionUval(), kKilometre);
    EXPECT_NE(is->RelativeTo(), was->RelativeTo());
    EXPECT_EQ(BitsOf(changed.get()), BitsOf(before.get()));
    EXPECT_GT(changed->Portal()->FocusEpoch()->Cutoff(), before->Portal()->FocusEpoch()->Cutoff());

    GoTo(window_, kNewBody);
    desktop_->Press("space");
    GoTo(window_, kNow);
    desktop_->Press("space");
    // Two runs; the button keeps the keyboard.
    GoTo(window_, kGo);
    for (int i = 0; i < 2; i++) {
        desktop_->Press("space", 2);
        Save(window_);
    }
    const auto run = Read(path_);
    EXPECT_EQ(run->Portal()->BodiesInMassOrder().size(), 4u);
    EXPECT_EQ(Outline(run->Root()), "Two suns(Two suns(Two suns))");
}

TEST_F(KeyboardDesktopTest, EveryMenuOpensByItsLetter) {
    Choose("b", "n");
    EXPECT_TRUE(IsMarked(window_, true));
    Choose("e", "u");
    EXPECT_TRUE(IsMarked(window_, false));
    Choose("n", "p");
    EXPECT_TRUE(DesktopSession::WaitFor(
        [&] { return desktop_->WindowsTitled("^Projection of ").size() == 2; }));
    Choose("s", "e");
    EXPECT_TRUE(Comes("^Epochs for "));
    Choose("f", "a");
    const Window panel = desktop_->WaitForWindow("^Save .* as$");
    desktop_->Press(panel, "Escape");
    EXPECT_TRUE(desktop_->WaitForNoWindow("^Save "));
    Choose("o", "n");
    EXPECT_TRUE(Comes("^New Simulation$"));
    Choose("o", "a");
    EXPECT_TRUE(Comes("^About Orvek$"));
}
