#include "Displays/Space/SpaceDisplay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <numbers>

#include "Displays/Space/SpaceView.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/History/RunHistory.h"
#include "Tests/Displays/Space/SpaceHand.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

using SpaceHand::Button;
using SpaceHand::Key;

const std::string kTitle = "Space of Tests";

class SpaceDisplayTest : public testing::Test {
protected:
    void SetUp() override {
        document_.document.AddConsumer(&history_);
        // The Sun, in the middle, is to be clicked and dragged past like any body.
        {
            const WriteGuard guard(document_.portal);
            document_.portal->SetSystemFromID(document_.portal->BodiesInMassOrder()[2]->ID());
        }
        Open();
    }
    void TearDown() override {
        document_.Pause();
        document_.document.RemoveConsumer(&history_);
    }

    void Open() {
        display_ = new SpaceDisplay({100, 100, 500, 400}, "test", document_.portal,
                                    document_.writeOk, document_.owner, TestContext());
        display_->SetHistory(&history_);
        ASSERT_EQ(display_->Init("Tests"), 0);
        document_.Add(display_);
        display_->Show();
        UserHand::WaitForWindow(kTitle);
        ASSERT_TRUE(WaitUntil([&] { return display_->CountPaintings() > 0; }));
        ::Settle(display_);
    }

    template <typename Work>
    auto Locked(Work work) {
        const BAutolock lock(display_);
        return work();
    }
    Camera GetCamera() {
        ::Settle(display_);
        return Locked([&] { return display_->Fields().camera; });
    }
    // Where a body is seen, from the picture's middle.
    BPoint PlaceOf(std::size_t body) {
        return Locked([&] {
            const SpaceMap map = display_->View()->MapOf(display_->Fields().camera);
            const auto point = map.Project(map.See(display_->Scene().bodies[body].position));
            return BPoint{static_cast<float>(point.x - map.Width() / 2),
                          static_cast<float>(point.y - map.Height() / 2)};
        });
    }
    BMessage Archive() {
        BMessage archive;
        Locked([&] { return display_->MiniArchive(&archive); });
        return archive;
    }

    TestDocument document_;
    RunHistory history_{document_.portal, document_.document.GetCalculator()};
    SpaceDisplay* display_ = nullptr;
};

}  // namespace

TEST_F(SpaceDisplayTest, ADragTurnsAndWithShiftKeepsTheHorizon) {
    const Camera before = GetCamera();
    SpaceHand::Drag(kTitle, Button::kLeft, {60, 0});
    const Camera turned = GetCamera();
    EXPECT_EQ(turned.target, before.target);
    EXPECT_EQ(turned.distance, before.distance);
    // Along the smaller side by half a turn.
    const double side = Locked([&] {
        const BRect bounds = display_->View()->Bounds();
        return static_cast<double>(std::min(bounds.Width(), bounds.Height())) + 1.0;
    });
    const double angle = std::acos(Dot(turned.Back(), before.Back()));
    EXPECT_NEAR(angle, 60.0 / side * std::numbers::pi, 1e-3);
    EXPECT_GT(std::abs(turned.right.z), 0.01);
    SpaceHand::Drag(kTitle, Button::kLeft, {10, 30}, true);
    EXPECT_NEAR(GetCamera().right.z, 0.0, 1e-12);
    // From straight above it goes no farther.
    SpaceHand::Drag(kTitle, Button::kLeft, {0, 2000}, true);
    EXPECT_NEAR(GetCamera().Elevation(), std::numbers::pi / 2, 1e-6);
}

TEST_F(SpaceDisplayTest, TheRightButtonAndShiftWithTheWheelMoveTheTarget) {
    const BPoint sun = PlaceOf(0);
    SpaceHand::Drag(kTitle, Button::kRight, {40, -25});
    static_cast<void>(GetCamera());
    EXPECT_NEAR(PlaceOf(0).x, sun.x + 40.0f, 2.0f);
    EXPECT_NEAR(PlaceOf(0).y, sun.y - 25.0f, 2.0f);
    const BPoint moved = PlaceOf(0);
    SpaceHand::TurnWheel(kTitle, {}, 1, true);
    static_cast<void>(GetCamera());
    EXPECT_GT(PlaceOf(0).y, moved.y + 30.0f);
}

TEST_F(SpaceDisplayTest, TheWheelZoomsAboutThePointerAndADoubleClickFollows) {
    SpaceHand::Press(kTitle, Key::kP);  // parallel: depth does not matter
    SpaceHand::Press(kTitle, Key::kZ);
    const Camera before = GetCamera();
    EXPECT_TRUE(before.isParallel);
    const BPoint planet = PlaceOf(1);
    SpaceHand::TurnWheel(kTitle, planet, 3);
    const Camera after = GetCamera();
    EXPECT_NEAR(after.distance * std::pow(1.25, 3), before.distance, 1e-6 * before.distance);
    EXPECT_NEAR(PlaceOf(1).x, planet.x, 2.0f);
    EXPECT_NEAR(PlaceOf(1).y, planet.y, 2.0f);
    SpaceHand::DoubleClick(kTitle, PlaceOf(1));
    static_cast<void>(GetCamera());
    EXPECT_EQ(Locked([&] { return display_->Fields().followed; }),
              Locked([&] { return display_->Scene().bodies[1].id; }));
    EXPECT_NEAR(PlaceOf(1).x, 0.0f, 1.0f);
    EXPECT_NEAR(PlaceOf(1).y, 0.0f, 1.0f);
    // It stays there while the run goes on.
    document_.Run(200);
    ::Settle(display_);
    EXPECT_NEAR(PlaceOf(1).x, 0.0f, 1.0f);
}

TEST_F(SpaceDisplayTest, AClickAsksToEditTheBodyAndTurnsNothing) {
    const Camera before = GetCamera();
    SpaceHand::Click(kTitle, PlaceOf(0));
    int64 body = kNoSystemID;
    EXPECT_EQ(document_.owner->WaitFor(kEditBody).FindInt64(kBodyIDField, &body), B_OK);
    EXPECT_EQ(body, Locked([&] { return display_->Scene().bodies[0].id; }));
    EXPECT_EQ(GetCamera(), before);
}

TEST_F(SpaceDisplayTest, KeysDoWhatTheMouseDoes) {
    SpaceHand::Press(kTitle, Key::kX);
    EXPECT_NEAR(GetCamera().Back().x, 1.0, 1e-12);
    SpaceHand::Press(kTitle, Key::kY);
    EXPECT_NEAR(GetCamera().right.x, 1.0, 1e-12);
    EXPECT_NEAR(GetCamera().up.z, 1.0, 1e-12);
    // Onto the orbit of the selected body, the Moon, which goes round anticlockwise.
    SpaceHand::Press(kTitle, Key::kO);
    const ThreeVector normal = Locked([&] {
        const std::vector<SpaceBody>& bodies = display_->Scene().bodies;
        return Cross(bodies[2].position - bodies[1].position,
                     bodies[2].velocity - bodies[1].velocity);
    });
    EXPECT_NEAR(Dot(GetCamera().Back(), normal) / Length(normal), 1.0, 1e-9);
    SpaceHand::Press(kTitle, Key::kY);
    UserHand::Choose(kTitle, "Fit All Bodies");
    const Camera level = GetCamera();
    SpaceHand::Press(kTitle, Key::kDown);
    EXPECT_GT(GetCamera().Elevation(), 0.05);
    SpaceHand::Press(kTitle, Key::kUp);
    SpaceHand::Press(kTitle, Key::kLeft);
    EXPECT_GT(GetCamera().Azimuth(), level.Azimuth() + 0.05);
    SpaceHand::Press(kTitle, Key::kRight);
    EXPECT_NEAR(GetCamera().Azimuth(), level.Azimuth(), 1e-9);
    const BPoint sun = PlaceOf(0);
    SpaceHand::Press(kTitle, Key::kRight, true);
    static_cast<void>(GetCamera());
    EXPECT_LT(PlaceOf(0).x, sun.x - 20.0f);
    SpaceHand::Press(kTitle, Key::kPlus);
    EXPECT_LT(GetCamera().distance, level.distance);
    SpaceHand::Press(kTitle, Key::kMinus);
    EXPECT_NEAR(GetCamera().distance, level.distance, 1e-6 * level.distance);
    UserHand::Choose(kTitle, "Fit All Bodies");
    EXPECT_NEAR(Length(GetCamera().target - level.target), 0.0, 1e-3 * level.distance);
}

TEST_F(SpaceDisplayTest, TheArchiveBringsTheViewBackAndWildOnesAreTamed) {
    SpaceHand::Drag(kTitle, Button::kLeft, {37, 21});
    UserHand::Choose(kTitle, "Velocity Arrows");
    UserHand::Choose(kTitle, "Light Sky");
    UserHand::Choose(kTitle, "Ecliptic");
    SpaceHand::Press(kTitle, Key::kP);
    const Camera camera = GetCamera();
    const BMessage archive = Archive();
    SpaceHand::Press(kTitle, Key::kZ);
    UserHand::Choose(kTitle, "Light Sky");
    ::Settle(display_);
    EXPECT_EQ(Locked([&] { return display_->Regenerate(archive); }), B_OK);
    const Camera back = GetCamera();
    EXPECT_NEAR(Length(back.right - camera.right) + Length(back.up - camera.up), 0.0, 1e-14);
    EXPECT_EQ(back.target, camera.target);
    EXPECT_EQ(back.distance, camera.distance);
    EXPECT_TRUE(back.isParallel);
    EXPECT_EQ(Archive().ToText(), archive.ToText());
    EXPECT_TRUE(Locked([&] { return display_->Fields().options.velocities; }));

    for (const double wild : {std::numeric_limits<double>::quiet_NaN(), 0.0, 1e308, -1e308}) {
        const double vector[] = {wild, wild, wild};
        BMessage broken;
        broken.AddDoubles("Space target", vector, 3);
        broken.AddDoubles("Space right", vector, 3);
        broken.AddDoubles("Space up", vector, 3);
        broken.AddDouble("Space distance", wild);
        Locked([&] { return display_->Regenerate(broken); });
        Locked([&] { display_->Repaint(); });
        const Camera tamed = GetCamera();
        EXPECT_NEAR(Length(tamed.right), 1.0, 1e-12);
        EXPECT_TRUE(std::isfinite(tamed.distance) && tamed.distance >= 1.0);
        EXPECT_TRUE(IsFinite(tamed.target));
    }
}

TEST_F(SpaceDisplayTest, ARunIsPaintedAndLeavesTrails) {
    const ThreeVector before = Locked([&] { return display_->Scene().bodies[1].position; });
    const int64 painted = display_->CountPaintings();
    BMessage started(kUnPauseRun);
    ASSERT_EQ(display_->PostMessage(&started), B_OK);
    document_.Go();
    EXPECT_TRUE(WaitUntil([&] { return display_->CountPaintings() > painted + 3; }));
    document_.Pause();
    BMessage stopped(kPauseRun);
    ASSERT_EQ(display_->PostMessage(&stopped), B_OK);
    ::Settle(display_);
    const ThreeVector now = document_.portal->BodiesInMassOrder()[1]->Position();
    Locked([&] {
        EXPECT_FALSE(display_->Scene().bodies[1].position == before);
        EXPECT_EQ(display_->Scene().bodies[1].position, now);
        ASSERT_FALSE(display_->Scene().trails.empty());
        // Trails reach the bodies.
        for (const KeptTrails::Trail& trail : display_->Scene().trails)
            for (const SpaceBody& body : display_->Scene().bodies) {
                if (body.id != trail.body || trail.samples.empty()) continue;
                EXPECT_EQ(trail.samples.back().position, body.position) << body.name;
            }
    });
    // Painting is none of the calculator's business: what it waits for is done at once.
    Locked([&] {
        const bigtime_t start = system_time();
        for (int32 i = 0; i < 1000; i++)
            display_->DisplayData();
        EXPECT_LT(system_time() - start, 20'000);
    });
}

TEST_F(SpaceDisplayTest, OpeningTurningAndClosingLeavesNothing) {
    const auto threads = [] {
        const std::filesystem::directory_iterator tasks("/proc/self/task");
        return std::distance(begin(tasks), end(tasks));
    };
    const auto before = threads();
    for (int32 i = 0; i < 30; i++) {
        SpaceHand::Drag(kTitle, Button::kLeft, {20.0f + static_cast<float>(i), 11});
        document_.Remove(display_);
        UserHand::WaitForWindow(kTitle, false);
        document_.portal->TellObservers(kNameChanged);
        Open();
    }
    EXPECT_TRUE(WaitUntil([&] { return threads() <= before; }));
}
