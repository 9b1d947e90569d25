#include "Displays/Projection/ProjectionDisplay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "Displays/Projection/ProjectionView.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Tests/Displays/Space/SpaceHand.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

using UserHand::Press;
using UserHand::WaitForWindow;

constexpr double kAU = 1.4959787066e11;
const std::string kAxisTitle = "Choose Suppressed Axis";
const std::string kScaleTitle = "Choose Display Scale";

class ProjectionDisplayTest : public testing::Test {
protected:
    void SetUp() override {
        display_ = document_.AddProjection();
        ASSERT_NE(display_, nullptr);
        ::Settle(display_);
    }

    // Does it with the display's lock.
    template <typename Work>
    auto Locked(Work work) {
        const ViewLock lock(display_->View());
        return work();
    }

    void Send(uint32 what) { Send(BMessage(what)); }
    void Send(const BMessage& message) {
        ASSERT_EQ(display_->PostMessage(&message), B_OK);
        ::Settle(display_);
    }

    BPoint Place(int32 body) {
        return Locked([&] { return display_->View()->Cache().DiscAt(body).center; });
    }
    BMessage Archive() {
        BMessage archive;
        Locked([&] { return display_->MiniArchive(&archive); });
        return archive;
    }
    BPoint Saved(const char* place) {
        BPoint point;
        EXPECT_EQ(Archive().FindPoint(place, &point), B_OK);
        return point;
    }
    // Where a dialog opens that was never placed.
    BPoint OverTheDisplay() {
        const BRect frame = Locked([&] { return display_->Frame(); });
        return {frame.left + 40, frame.top + 40};
    }
    Projection GetProjection() {
        return Locked([&] { return display_->GetProjection(); });
    }

    TestDocument document_;
    ProjectionDisplay* display_ = nullptr;
};

}  // namespace

TEST_F(ProjectionDisplayTest, ArchivesWhatReadersKnowAndItsOwnFields) {
    const BMessage usual = Archive();
    EXPECT_EQ(usual.CountNames(), 5);
    for (const char* name : {"Disp frame", "Scale", "Sup axis", "Ref to", "Units"})
        EXPECT_TRUE(usual.HasName(name)) << name;

    BMessage archive;
    archive.AddRect("Disp frame", {150, 120, 449, 379});
    archive.AddPoint("Axis at", {70, 80});
    archive.AddPoint("Scale at", {90, 100});
    archive.AddDouble("Scale", 3e-10);
    archive.AddInt32("Sup axis", 2);
    archive.AddInt32("Ref to", 5);
    archive.AddDouble("Units", 1000.0);
    const double center[] = {1e10, 2e10, 3e10};
    archive.AddDoubles("View center", center, 3);
    archive.AddInt64("View follows", 2);
    archive.AddBool("View names", true);
    archive.AddBool("View scale bar", false);
    archive.AddBool("View time", false);
    archive.AddBool("View marks", false);
    archive.AddInt64("View turns about", 0);
    archive.AddInt64("View turns with", 1);
    const double axis[] = {0.0, 0.6, 0.8};
    archive.AddDoubles("View turning axis", axis, 3);
    archive.AddDouble("View trail time", 3e7);
    archive.AddDouble("View trail turns", 2.5);
    archive.AddBool("View trail fades", false);
    const double right[] = {0.0, 1.0, 0.0};
    archive.AddDoubles("View right", right, 3);
    const double up[] = {0.6, 0.0, 0.8};
    archive.AddDoubles("View up", up, 3);
    archive.AddInt64("View measures from", 1);
    archive.AddInt64("View measures to", 2);
    EXPECT_EQ(Locked([&] { return display_->Regenerate(archive); }), B_OK);
    EXPECT_EQ(Archive(), archive) << Archive().ToText();

    // What is missing stays as it was, and only "Units" tells.
    BMessage sparse;
    sparse.AddInt32("Sup axis", 1);
    EXPECT_EQ(Locked([&] { return display_->Regenerate(sparse); }), B_NAME_NOT_FOUND);
    EXPECT_EQ(GetProjection().axis, 1);
    EXPECT_EQ(GetProjection().scale, 3e-10);
}

TEST_F(ProjectionDisplayTest, TrailsGetAnyLengthThatIsTyped) {
    const std::string title = "Trail Length";
    const auto choose = [&](const std::string& length) {
        UserHand::Choose("Projection", "Other…");
        WaitForWindow(title);
        UserHand::Type(title, length);
        Press(title, UserHand::Key::kEnter);
    };
    const auto expectLength = [&](double time, double turns) {
        WaitForWindow(title, false);
        ::Settle(display_);
        double found = 0.0;
        EXPECT_EQ(Archive().FindDouble("View trail time", &found) == B_OK ? found : 0.0, time);
        found = 0.0;
        EXPECT_EQ(Archive().FindDouble("View trail turns", &found) == B_OK ? found : 0.0, turns);
    };
    UserHand::Choose("Projection", "Other…");
    WaitForWindow(title);
    EXPECT_EQ(UserHand::EntryText(title), "3 orbits");
    Press(title, UserHand::Key::kEscape);
    expectLength(0.0, 0.0);
    choose("30 d");
    expectLength(30.0 * 86400.0, 0.0);
    choose("2,5 orbits");
    expectLength(0.0, 2.5);
    // What makes no sense keeps the dialog open.
    for (const char* const nonsense : {"-1", "0 yr", "three", "3 apples"}) {
        UserHand::Choose("Projection", "Other…");
        WaitForWindow(title);
        UserHand::Type(title, nonsense);
        Press(title, UserHand::Key::kEnter);
        ::Settle(display_);
        WaitForWindow(title);
        // The first one gives up what is typed.
        Press(title, UserHand::Key::kEscape);
        Press(title, UserHand::Key::kEscape);
        expectLength(0.0, 2.5);
    }
    choose("7");
    expectLength(0.0, 7.0);
}

TEST_F(ProjectionDisplayTest, OffersToRunBackwardsWhereTheOrderKnowsTheWay) {
    EXPECT_FALSE(UserHand::IsEnabled("Projection", "Run Backwards"));
    {
        const WriteGuard guard(document_.portal);
        document_.portal->FocusEpoch()->SetOrder(16);
    }
    document_.portal->TellObservers(kEpochSettingsChanged);
    ::Settle(display_);
    EXPECT_TRUE(UserHand::IsEnabled("Projection", "Run Backwards"));
    UserHand::Choose("Projection", "Run Backwards");
    EXPECT_EQ(document_.owner->WaitFor(kRunBackwards).what, kRunBackwards);
}

TEST_F(ProjectionDisplayTest, TheAxisDialogWorksWithKeys) {
    Send(FourCC("rqax"));
    WaitForWindow(kAxisTitle);
    EXPECT_EQ(Saved("Axis at"), OverTheDisplay());
    UserHand::MoveWindow(kAxisTitle, {200, 210});
    // From Z, which is on, to X.
    for (const auto key :
         {UserHand::Key::kLeftArrow, UserHand::Key::kLeftArrow, UserHand::Key::kEnter})
        Press(kAxisTitle, key);
    WaitForWindow(kAxisTitle, false);
    ASSERT_TRUE(WaitUntil([&] { return GetProjection().axis == Projection::kX; }));
    EXPECT_NEAR(Place(1).y, -1, 1e-3);  // the planet is at (150, 0, 1) 10^9 m

    // It opens where it was, and the Escape key changes nothing.
    Send(FourCC("rqax"));
    WaitForWindow(kAxisTitle);
    EXPECT_EQ(Saved("Axis at"), (BPoint{200, 210}));
    Press(kAxisTitle, UserHand::Key::kEscape);
    WaitForWindow(kAxisTitle, false);
    ::Settle(display_);
    EXPECT_EQ(GetProjection().axis, Projection::kX);
}

TEST_F(ProjectionDisplayTest, TheScaleDialogMakesTheWindowALength) {
    Send(FourCC("rqsc"));
    WaitForWindow(kScaleTitle);
    EXPECT_EQ(UserHand::EntryText(kScaleTitle), "401000000000");  // 401 pixels
    display_->ResizeTo(299, 300);
    EXPECT_TRUE(WaitUntil([] { return UserHand::EntryText(kScaleTitle) == "300000000000"; }));
    // A pulse without a change of size leaves what the user is typing.
    UserHand::Type(kScaleTitle, "10 A");
    Locked([&] {
        display_->FrameResized(299, 300);
        display_->Pulse();
    });
    ::Settle(display_);
    snooze(50'000);
    EXPECT_EQ(UserHand::EntryText(kScaleTitle), "10 A");
    UserHand::Type(kScaleTitle, "10 AU");
    Press(kScaleTitle, UserHand::Key::kEnter);
    ASSERT_TRUE(WaitUntil([&] { return GetProjection().scale != 1e-9; }));
    EXPECT_DOUBLE_EQ(GetProjection().scale, 300 / (10 * kAU));
    double units = 0;
    EXPECT_EQ(Archive().FindDouble("Units", &units), B_OK);
    EXPECT_EQ(units, kAU);
    EXPECT_EQ(Saved("Scale at"), OverTheDisplay());
}

TEST_F(ProjectionDisplayTest, AnOpenScaleDialogIsToldOfZooming) {
    const auto zoom = [&] { Locked([&] { display_->View()->WheelTurned({{}, 0.0f, 1.0f}); }); };
    Send(FourCC("rqsc"));
    WaitForWindow(kScaleTitle);
    zoom();
    EXPECT_TRUE(WaitUntil([] { return UserHand::EntryText(kScaleTitle) == "320800000000"; }));
    Press(kScaleTitle, UserHand::Key::kEnter);
    WaitForWindow(kScaleTitle, false);
    ::Settle(display_);
    EXPECT_DOUBLE_EQ(GetProjection().scale, 1.25e-9);

    // What the user types is not taken out of the hand, and holds.
    Send(FourCC("rqsc"));
    WaitForWindow(kScaleTitle);
    UserHand::Type(kScaleTitle, "10 AU");
    for (int i = 0; i < 2; i++)
        zoom();
    ::Settle(display_);
    snooze(50'000);
    EXPECT_EQ(UserHand::EntryText(kScaleTitle), "10 AU");
    Press(kScaleTitle, UserHand::Key::kEnter);
    WaitForWindow(kScaleTitle, false);
    ::Settle(display_);
    EXPECT_DOUBLE_EQ(GetProjection().scale, 401 / (10 * kAU));
}

TEST_F(ProjectionDisplayTest, AnUntouchedScaleDialogLeavesTheScaleToTheBit) {
    constexpr double kScale = 7e-10;  // 401 pixels / (401 pixels / this) is another number
    BMessage saved;
    saved.AddDouble("Scale", kScale);
    saved.AddInt32("Ref to", 0);
    Locked([&] { return display_->Regenerate(saved); });
    Send(FourCC("rqsc"));
    WaitForWindow(kScaleTitle);
    Press(kScaleTitle, UserHand::Key::kEnter);
    // The answer has come: the dialog shows a reference in any case.
    ASSERT_TRUE(WaitUntil([&] {
        int32 reference = 0;
        return Archive().FindInt32("Ref to", &reference) == B_OK && reference != 0;
    }));
    EXPECT_EQ(GetProjection().scale, kScale);
}

TEST_F(ProjectionDisplayTest, RefusesWhatIsNoScaleAndAnswersNobodyElse) {
    BMessage message(FourCC("stsc"));
    message.AddDouble("Scale", 5e-9);
    Send(message);  // no dialog is open
    EXPECT_EQ(GetProjection().scale, 1e-9);
    for (const double bad : {0.0, -1.0, HUGE_VAL, std::nan("")}) {
        Send(FourCC("rqsc"));
        message.ReplaceDouble("Scale", bad);
        Send(message);
        EXPECT_EQ(GetProjection().scale, 1e-9) << bad;
    }
    Send(FourCC("rqax"));
    BMessage axis(FourCC("stax"));
    axis.AddInt32("Axis", 4);
    BMessage reply;
    EXPECT_EQ(BMessenger(static_cast<BHandler*>(display_)).SendMessage(&axis, &reply), B_OK);
    EXPECT_EQ(reply.what, FourCC("rnok"));
    EXPECT_EQ(GetProjection().axis, Projection::kZ);
}

// The axis that is in force already leaves the trails.
TEST_F(ProjectionDisplayTest, ErasesOnlyWhenItMust) {
    const auto hasTrail = [&] {
        return Locked([&] {
            const Canvas& canvas = display_->View()->LowerLayer();
            const BPoint place = display_->View()->Cache().DiscAt(1).center;
            for (float y = place.y; y < place.y + 50; y++)
                if (canvas.PixelAt({std::round(place.x), std::round(y)}).green > 15) return true;
            return false;
        });
    };
    document_.Run(2000);
    ::Settle(display_);
    ASSERT_TRUE(hasTrail());
    const auto choose = [&](int32 axis) {
        Send(FourCC("rqax"));
        BMessage message(FourCC("stax"));
        message.AddInt32("Axis", axis);
        Send(message);
    };
    choose(Projection::kZ);
    EXPECT_TRUE(hasTrail());
    choose(Projection::kY);
    choose(Projection::kZ);
    EXPECT_FALSE(hasTrail());
}

// What comes to the view's hooks; the canvas's tests use the mouse itself.
TEST_F(ProjectionDisplayTest, WheelDragAndKeysMoveTheView) {
    TrajectoryView* const view = display_->View();
    const auto bounds = [&] { return Locked([&] { return view->Bounds(); }); };
    const BPoint before = Place(1);
    // Turn the wheel over the planet: it stays under the pointer.
    Locked([&] { view->WheelTurned({before, 0.0f, 1.0f}); });
    EXPECT_DOUBLE_EQ(GetProjection().scale, 1.25e-9);
    EXPECT_NEAR(Place(1).x, before.x, 0.6);
    EXPECT_NEAR(Place(1).y, before.y, 0.6);

    const BRect zoomed = bounds();
    Locked([&] {
        MouseInput mouse;
        mouse.buttons = B_PRIMARY_MOUSE_BUTTON;
        mouse.inView = {50, 50};
        view->MouseDown(mouse);
        for (const BPoint place : {BPoint{60, 45}, BPoint{80, 30}}) {
            mouse.inView = place;
            view->MouseMoved(mouse, CanvasView::Transit::kInside);
        }
        view->MouseUp(mouse);
        view->KeyDown({B_LEFT_ARROW});
    });
    EXPECT_EQ(bounds().left, zoomed.left - 30 - 40);
    EXPECT_EQ(bounds().top, zoomed.top + 20);
    // The places on the canvas are what they were: trails stay.
    EXPECT_NEAR(Place(1).x, before.x, 0.6);

    Send(FourCC("fit "));
    for (int32 body = 0; body < 4; body++) {
        EXPECT_GT(Place(body).x, bounds().left);
        EXPECT_LT(Place(body).x, bounds().right);
    }
}

TEST_F(ProjectionDisplayTest, LooksFromWhereKeysAndTheAxisDialogSay) {
    {
        const WriteGuard guard(document_.portal);
        document_.portal->SetSystemFromID(document_.portal->BodiesInMassOrder()[1]->ID());
    }
    document_.portal->TellObservers(kFocusSystemChanged);
    ::Settle(display_);
    const std::string title = Locked([&] { return std::string(display_->Title()); });
    SpaceHand::Press(title, SpaceHand::Key::kX);
    ::Settle(display_);
    EXPECT_EQ(GetProjection().axis, Projection::kX);
    SpaceHand::Press(title, SpaceHand::Key::kO);
    ::Settle(display_);
    const ViewPlane plane = GetProjection().plane;
    ASSERT_TRUE(plane.IsOn());
    const std::vector<Body*> bodies = document_.portal->BodiesInMassOrder();
    const ThreeVector normal = Cross(bodies[1]->Position() - bodies[0]->Position(),
                                     bodies[1]->Velocity() - bodies[0]->Velocity());
    EXPECT_NEAR(Dot(Cross(plane.right, plane.up), normal) / Length(normal), 1.0, 1e-12);
    // The same axis again is another view.
    SpaceHand::Press(title, SpaceHand::Key::kX);
    ::Settle(display_);
    EXPECT_FALSE(GetProjection().plane.IsOn());
}

TEST_F(ProjectionDisplayTest, FollowsASystemAndLeavesItWhereItIs) {
    Locked([&] { display_->Follow(1); });
    EXPECT_EQ(Place(1), (BPoint{0, 0}));
    document_.Run(500);
    ::Settle(display_);
    EXPECT_EQ(Place(1), (BPoint{0, 0}));
    Locked([&] { display_->Follow(kNoSystemID); });
    EXPECT_NEAR(Place(1).x, 0, 1e-3);
    EXPECT_NEAR(Place(1).y, 0, 1e-3);

    // A followed body that is deleted is followed no more.
    Locked([&] { display_->Follow(2); });
    document_.portal->WriteLock();
    MassSystem* const root = document_.portal->FocusEpoch()->RootSystem();
    const std::unique_ptr<MassSystem> moon(root->SystemFromID(2));
    root->RemoveChild(moon.get());
    document_.portal->WriteUnlock();
    document_.portal->TellObservers(0xc00);
    ::Settle(display_);
    EXPECT_EQ(Locked([&] { return display_->Followed(); }), kNoSystemID);
    EXPECT_EQ(Locked([&] { return display_->View()->Cache().CountBodies(); }), 3);
}

TEST_F(ProjectionDisplayTest, TheWheelKeepsWhatIsFollowedWhereItIs) {
    const auto turn = [&](BPoint where) {
        Locked([&] { display_->View()->WheelTurned({where, 0.0f, 1.0f}); });
    };
    Locked([&] { display_->Follow(1); });
    for (int i = 0; i < 20; i++)
        turn({90, -60});
    EXPECT_EQ(Place(1), (BPoint{0, 0}));
    // What is out of sight cannot be lost: the point under the mouse stays.
    Locked([&] { display_->PanBy(400, 0); });
    turn({490, -60});
    EXPECT_NEAR(Place(1).x, 90 - 490 * 1.25, 0.1);
    EXPECT_NEAR(Place(1).y, -60 + 60 * 1.25, 0.1);
    // Chosen again it comes back.
    Locked([&] { display_->Follow(1); });
    EXPECT_EQ(Place(1), (BPoint{0, 0}));
}

// What the user sees is not yet what the display has.
TEST_F(ProjectionDisplayTest, AChoiceOfWhatToFollowIsNotLostToTheOneBefore) {
    WindowServer::Perform([&] {
        std::thread([&] { Locked([&] { display_->Follow(1); }); }).join();
        UserHand::Choose("Projection of Tests", "Nothing");
    });
    ::Settle(display_);
    EXPECT_EQ(Locked([&] { return display_->Followed(); }), kNoSystemID);
}

TEST_F(ProjectionDisplayTest, TextsOverThePicture) {
    const auto texts = [&](int32 pointedAt = -1) {
        std::vector<std::string> all;
        for (const OverlayItem& item : Locked([&] { return display_->MakeTexts(pointedAt); }))
            all.push_back(item.text);
        return all;
    };
    EXPECT_EQ(texts(), (std::vector<std::string>{"1 AU", "t = 0.00000 yr"}));
    EXPECT_EQ(texts(2).back(), "Moon");
    Send(FourCC("tbar"));
    Send(FourCC("ttim"));
    EXPECT_TRUE(texts().empty());
    Send(FourCC("tnam"));
    // The moon's name would lie on the planet's.
    EXPECT_EQ(texts(), (std::vector<std::string>{"Star", "Planet", "Probe"}));
}
