// Trails that a picture has lost come back from the kept run.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "Displays/Base/ViewLock.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Simulation/History/RunHistory.h"
#include "Tests/Displays/TestDocument.h"

namespace {

constexpr double kAU = 1.4959787066e11;
constexpr int64 kStepsOfAYear = 32'000;

class KeptTrailsTest : public testing::Test {
protected:
    void SetUp() override {
        Epoch epoch;
        epoch.SetName("Start");
        const double speed = std::sqrt(kSunGM / kAU);
        epoch.RootSystem()->AddChild(MakeBody("Sun", 0, kSunGM, {}, {}).release());
        epoch.RootSystem()->AddChild(
            MakeBody("Earth", 1, 0.0, {kAU, 0.0, 0.0}, {0.0, speed, 0.0}).release());
        ASSERT_FALSE(document_.document.Load(RecordOf({&epoch})).Failed());
        document_.document.AddConsumer(&history_);
        display_ = document_.AddProjection();
        ASSERT_NE(display_, nullptr);
        display_->SetHistory(&history_);
        ::Settle(display_);
    }
    void TearDown() override { document_.document.RemoveConsumer(&history_); }

    template <typename Work>
    auto Locked(Work work) {
        const ViewLock lock(display_->View());
        return work();
    }
    void Run(int64 steps) {
        document_.Run(steps);
        ::Settle(display_);
    }
    void Zoom(double factor) {
        Locked([&] { display_->ZoomAbout(display_->View()->AnchorPoint(), factor); });
        ::Settle(display_);
    }
    // The part of the circle about the middle of the projection that is drawn, from one angle to
    // another.
    double Drawn(double from = 0.0, double to = 2.0 * std::numbers::pi) {
        constexpr int32 kPlaces = 200;
        int32 drawn = 0;
        for (int32 i = 0; i < kPlaces; i++) {
            const double angle = from + (to - from) * (i + 0.5) / kPlaces;
            if (IsDrawn(kAU * std::cos(angle), kAU * std::sin(angle))) drawn++;
        }
        return static_cast<double>(drawn) / kPlaces;
    }
    // A line is a pixel wide: it may be in the one beside.
    bool IsDrawn(double x, double y) {
        return Locked([&] {
            const BPoint at = display_->Map(x, y, 0.0);
            for (float dx = -1.0f; dx <= 1.0f; dx++)
                for (float dy = -1.0f; dy <= 1.0f; dy++)
                    if (display_->View()->LowerLayer().PixelAt({at.x + dx, at.y + dy}) !=
                        TrajectoryView::kSky)
                        return true;
            return false;
        });
    }

    TestDocument document_;
    RunHistory history_{document_.portal, document_.document.GetCalculator()};
    ProjectionDisplay* display_ = nullptr;
};

}  // namespace

TEST_F(KeptTrailsTest, ZoomingPanningAndFollowingShowThemAndAnErasureStays) {
    Zoom(0.6);
    Run(kStepsOfAYear);
    ASSERT_GT(display_->Epoch()->FocusEpoch()->Time(), 365.25 * 86400.0);
    EXPECT_EQ(Drawn(), 1.0);
    Zoom(1.1);
    EXPECT_EQ(Drawn(), 1.0);
    // What was far outside comes into sight.
    Zoom(5.0);
    const BPoint place = Locked([&] { return display_->Map(kAU, 0.0, 0.0); });
    ASSERT_GT(place.x, Locked([&] { return display_->View()->BitmapBounds().right; }));
    Locked([&] { display_->PanBy(place.x, 0.0f); });
    EXPECT_EQ(Drawn(-0.2, 0.2), 1.0);
    Locked([&] { display_->PanBy(-place.x, 0.0f); });
    Zoom(0.2);
    // Seen from the planet the star goes round.
    Locked([&] { display_->FollowBody(1); });
    EXPECT_EQ(Drawn(), 1.0);
    Locked([&] { display_->Follow(kNoSystemID); });
    EXPECT_EQ(Drawn(), 1.0);

    ASSERT_EQ(display_->PostMessage(kErase), B_OK);
    ::Settle(display_);
    EXPECT_LT(Drawn(), 0.05);
    Zoom(0.9);
    EXPECT_LT(Drawn(), 0.05);
    // The next run's trail is there, and those of before the erasure are not.
    Run(kStepsOfAYear / 4);
    Zoom(0.9);
    EXPECT_NEAR(Drawn(), 0.25, 0.06);
    // An undone run has no trail any more.
    document_.document.GetUndoChain()->Undo();
    Zoom(0.9);
    EXPECT_LT(Drawn(), 0.05);
}
