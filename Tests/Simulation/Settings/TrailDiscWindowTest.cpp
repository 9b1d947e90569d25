// The window of a system's trail and disc, by hand.
#include "Simulation/Settings/TrailDiscWindow.h"

#include "Simulation/Settings/TrailPreview.h"
#include "Tests/Simulation/SettingsFixture.h"

class TrailDisc : public SettingsFixture {
protected:
    TrailDisc() {
        trail->Show();
        EntryHand::WaitUntilActive(trail->ChildAt(0));
        TrailDisc::Settle();
    }
    ~TrailDisc() override {
        if (trail->Lock()) trail->Quit();
    }

    void Settle() override {
        SettingsFixture::Settle();
        ::Settle(trail);
        ::Settle(trail);
    }

    // Where the trail of the preview ends.
    rgb_color DiscShown() {
        trail->Lock();
        const auto* const preview = static_cast<TrailPreview*>(trail->FindView("preview"));
        const BRect bounds = preview->Bounds();
        const rgb_color color = preview->UpperLayer().PixelAt(
            {bounds.left + 0.87f * bounds.Width(), bounds.bottom - 0.53f * bounds.Height()});
        trail->Unlock();
        return color;
    }

    TrailDiscWindow* const trail = new TrailDiscWindow(portal, simulation.window, TestContext());
    const EntryHand user{trail->ChildAt(0)};

    static constexpr const char* kGreen = "Disc Color Green:";
    static constexpr rgb_color kAtFirst{255, 195, 30, 255};
};

TEST_F(TrailDisc, ADragIsSeenAtOnceAndIsOneEdit) {
    EXPECT_EQ(DiscShown(), kAtFirst);
    user.Grab(kGreen, 100, 20);
    Settle();
    EXPECT_EQ(user.Text(kGreen), "20");
    EXPECT_EQ(DiscShown(), (rgb_color{255, 20, 30, 255}));
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), kAtFirst);
    user.Grab(kGreen, 60, 40);
    user.LetGo(kGreen);
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), (rgb_color{255, 40, 30, 255}));
    EXPECT_EQ(CountEdits(), 1);
    Undo();
    EXPECT_EQ(DiscShown(), kAtFirst);
    EXPECT_EQ(user.Knob(kGreen), 195);
}

TEST_F(TrailDisc, TheColorDialogShowsAndTakesBackWhatItTries) {
    user.Click("Disc Color");
    EntryHand::TryColor(0x102030);
    Settle();
    EXPECT_EQ(DiscShown(), (rgb_color{0x10, 0x20, 0x30, 255}));
    EXPECT_EQ(user.Knob(kGreen), 0x20);
    EntryHand::EndColorDialog(false);
    Settle();
    EXPECT_EQ(DiscShown(), kAtFirst);
    EXPECT_EQ(CountEdits(), 0);

    user.Click("Trail Color");
    EntryHand::TryColor(0x405060);
    EntryHand::EndColorDialog(true);
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::TrailColor), (rgb_color{0x40, 0x50, 0x60, 255}));
    EXPECT_EQ(CountEdits(), 1);
}

TEST_F(TrailDisc, NumbersAndSwitchesAreEdits) {
    user.Enter(kGreen, "7");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), (rgb_color{255, 7, 30, 255}));
    for (const char* text : {"256", "-1", "1.5", "lime"}) {
        user.Enter(kGreen, text);
        Settle();
        EXPECT_TRUE(user.IsRefused(kGreen));
    }
    user.Escape(kGreen);
    EXPECT_EQ(user.Text(kGreen), "7");
    user.Click("Leave Trail");
    Settle();
    EXPECT_FALSE(Of(1, &MassSystem::TrailOn));
    user.Click("Draw Disc");
    Settle();
    EXPECT_FALSE(Of(1, &MassSystem::DiscOn));
    EXPECT_NE(DiscShown(), (rgb_color{255, 7, 30, 255}));
    EXPECT_EQ(CountEdits(), 3);
}

TEST_F(TrailDisc, AnEditGoesToTheSystemForWhichItWasBegun) {
    const rgb_color other = Of(0, &MassSystem::DiscColor);
    user.Grab(kGreen, 100, 20);
    Settle();
    Focus(0);
    user.LetGo(kGreen);
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), (rgb_color{255, 20, 30, 255}));
    EXPECT_EQ(Of(0, &MassSystem::DiscColor), other);
    EXPECT_EQ(DiscShown(), other);

    user.Type(kGreen, "9");
    Focus(1);
    EXPECT_EQ(Of(0, &MassSystem::DiscColor).green, 9);
    EXPECT_EQ(user.Text(kGreen), "20");
}
