// The window of a system's trail and disc, by hand.
#include "TrailDiscWindow.h"

#include "ChangeFlags.h"
#include "SettingsFixture.h"
#include "TrailPreview.h"

class TrailDisc : public SettingsFixture {
protected:
    TrailDisc() {
        trail->Show();
        EntryHand::WaitUntilActive(trail->ChildAt(0));
        SettleAll();
    }
    ~TrailDisc() override {
        if (trail->Lock()) trail->Quit();
    }

    void SettleAll() {
        Settle();
        ::Settle(trail);
        ::Settle(trail);
    }

    // What the preview shows there, in parts of its width and height.
    rgb_color DiscShown() {
        trail->Lock();
        const auto& picture = static_cast<TrailPreview*>(trail->FindView("preview"))->UpperLayer();
        const BRect bounds = static_cast<TrailPreview*>(trail->FindView("preview"))->Bounds();
        rgb_color found;
        // The disc is the only thing that is so large.
        for (float x = bounds.left; x < bounds.right; x++)
            for (float y = bounds.top; y < bounds.bottom; y++) {
                const rgb_color color = picture.PixelAt({x, y});
                if (color != picture.Background() && color == picture.PixelAt({x + 6, y}) &&
                    color == picture.PixelAt({x, y + 6}))
                    found = color;
            }
        trail->Unlock();
        return found;
    }

    TrailDiscWindow* const trail = new TrailDiscWindow(portal, window, TestContext());
    const EntryHand user{trail->ChildAt(0)};

    static constexpr const char* kGreen = "Disc Color Green:";
    static constexpr rgb_color kAtFirst{255, 195, 30, 255};
};

TEST_F(TrailDisc, ADragIsSeenAtOnceAndIsOneEdit) {
    EXPECT_EQ(DiscShown(), kAtFirst);
    user.Grab(kGreen, 100, 20);
    SettleAll();
    EXPECT_EQ(user.Text(kGreen), "20");
    EXPECT_EQ(DiscShown(), (rgb_color{255, 20, 30, 255}));
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), kAtFirst);
    user.Grab(kGreen, 60, 40);
    user.LetGo(kGreen);
    SettleAll();
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), (rgb_color{255, 40, 30, 255}));
    EXPECT_EQ(CountEdits(), 1);
    Undo();
    SettleAll();
    EXPECT_EQ(DiscShown(), kAtFirst);
    EXPECT_EQ(user.Knob(kGreen), 195);
    EXPECT_EQ(Of(1, &MassSystem::TrailColor), (rgb_color{255, 51, 30, 255}));
}

TEST_F(TrailDisc, TheColorDialogShowsAndTakesBackWhatItTries) {
    user.Click("Disc Color");
    EntryHand::TryColor(0x102030);
    SettleAll();
    EXPECT_EQ(DiscShown(), (rgb_color{0x10, 0x20, 0x30, 255}));
    EXPECT_EQ(user.Knob(kGreen), 0x20);
    EXPECT_EQ(CountEdits(), 0);
    EntryHand::EndColorDialog(false);
    SettleAll();
    EXPECT_EQ(DiscShown(), kAtFirst);
    EXPECT_EQ(CountEdits(), 0);

    user.Click("Trail Color");
    EntryHand::TryColor(0x405060);
    EntryHand::EndColorDialog(true);
    SettleAll();
    EXPECT_EQ(Of(1, &MassSystem::TrailColor), (rgb_color{0x40, 0x50, 0x60, 255}));
    EXPECT_EQ(CountEdits(), 1);
}

TEST_F(TrailDisc, NumbersAndSwitchesAreEdits) {
    user.Type(kGreen, "7");
    user.Enter(kGreen);
    SettleAll();
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), (rgb_color{255, 7, 30, 255}));
    for (const char* text : {"256", "-1", "1.5", "lime"}) {
        user.Type(kGreen, text);
        user.Enter(kGreen);
        SettleAll();
        EXPECT_EQ(user.Text(kGreen), "7");
        EXPECT_TRUE(user.IsRefused(kGreen));
    }
    user.Click("Leave Trail");
    SettleAll();
    EXPECT_FALSE(Of(1, &MassSystem::TrailOn));
    user.Click("Draw Disc");
    SettleAll();
    EXPECT_FALSE(Of(1, &MassSystem::DiscOn));
    EXPECT_EQ(DiscShown(), rgb_color{});
    EXPECT_EQ(CountEdits(), 3);
}

TEST_F(TrailDisc, AnEditGoesToTheSystemForWhichItWasBegun) {
    const rgb_color other = Of(0, &MassSystem::DiscColor);
    user.Grab(kGreen, 100, 20);
    SettleAll();
    InWindow([this] { controller.EditBody(0); });
    SettleAll();
    user.LetGo(kGreen);
    SettleAll();
    EXPECT_EQ(Of(1, &MassSystem::DiscColor), (rgb_color{255, 20, 30, 255}));
    EXPECT_EQ(Of(0, &MassSystem::DiscColor), other);
    EXPECT_EQ(DiscShown(), other);

    user.Type(kGreen, "9");
    InWindow([this] { controller.EditBody(1); });
    SettleAll();
    EXPECT_EQ(Of(0, &MassSystem::DiscColor).green, 9);
    EXPECT_EQ(user.Text(kGreen), "20");
}
