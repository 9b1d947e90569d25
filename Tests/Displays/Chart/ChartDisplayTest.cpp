#include "Displays/Chart/ChartDisplay.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Displays/Chart/ChartView.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/ShownMoment.h"
#include "Tests/Displays/Space/SpaceHand.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

using SpaceHand::Button;
using SpaceHand::Key;

const std::string kTitle = "Chart of Tests";

class ChartDisplayTest : public testing::Test {
protected:
    void SetUp() override {
        document_.document.AddConsumer(&history_);
        display_ = new ChartDisplay({100, 100, 700, 600}, "test", document_.portal,
                                    document_.writeOk, document_.owner, TestContext());
        display_->SetHistory(&history_, &shown_);
        ASSERT_EQ(display_->Init("Tests"), 0);
        document_.Add(display_);
        display_->Show();
        UserHand::WaitForWindow(kTitle);
    }
    void TearDown() override {
        document_.Pause();
        document_.Remove(display_);
        document_.document.RemoveConsumer(&history_);
    }

    template <typename Work>
    auto Locked(Work work) {
        const BAutolock lock(display_);
        return work();
    }
    void Run() {
        document_.Run(20'000);
        ASSERT_TRUE(WaitUntil([this] {
            return Locked([this] {
                const auto& series = display_->Reader().Series();
                return !series.empty() && series[0].Count() > 1 && display_->IsComplete();
            });
        }));
        ::Settle(display_);
    }
    ChartScene Scene() {
        ::Settle(display_);
        return Locked([this] { return display_->MakeScene(); });
    }
    std::string Names() {
        std::string names;
        for (const ChartScene::Line& line : Scene().lines)
            names += line.name + "; ";
        return names;
    }

    TestDocument document_;
    RunHistory history_{document_.portal, document_.document.GetCalculator()};
    ShownMoment shown_{document_.portal, &history_, " & "};
    ChartDisplay* display_ = nullptr;
};

}  // namespace

TEST_F(ChartDisplayTest, TheWheelZoomsADragMovesAndFitShowsAll) {
    Run();
    const ChartScene all = Scene();
    EXPECT_EQ(all.across.range.low, 0.0);
    SpaceHand::TurnWheel(kTitle, {40, 10}, 2);
    const ChartScene zoomed = Scene();
    const double factor = std::pow(1.25, 2.0);
    const auto length = [](const ChartRange& range) { return range.high - range.low; };
    EXPECT_NEAR(length(zoomed.across.range) * factor / length(all.across.range), 1.0, 1e-9);
    EXPECT_NEAR(length(zoomed.up.range) * factor / length(all.up.range), 1.0, 1e-9);
    SpaceHand::Drag(kTitle, Button::kLeft, {50, 0});
    const ChartScene moved = Scene();
    EXPECT_LT(moved.across.range.low, zoomed.across.range.low);
    EXPECT_EQ(moved.up.range, zoomed.up.range);
    SpaceHand::Press(kTitle, Key::kRight);
    EXPECT_GT(Scene().across.range.low, moved.across.range.low);
    SpaceHand::Press(kTitle, Key::kX);
    EXPECT_LT(length(Scene().across.range), length(moved.across.range));
    EXPECT_EQ(Scene().up.range, moved.up.range);
    UserHand::Choose(kTitle, "Fit All");
    EXPECT_EQ(Scene().across.range, all.across.range);
}

// A click goes there in all displays; what the line has there stands beside its name.
TEST_F(ChartDisplayTest, AClickShowsTheMomentAndTheLineFollowsIt) {
    Run();
    const double end = Scene().cursor.value_or(0.0);
    EXPECT_EQ(end, Scene().across.range.high);
    const std::string atEnd = Scene().values.at(0);
    EXPECT_FALSE(atEnd.empty());
    SpaceHand::Click(kTitle, {0, 0});
    ASSERT_TRUE(WaitUntil([this] { return shown_.IsPast(); }));
    ASSERT_TRUE(WaitUntil([&] { return Scene().cursor != end; }));
    const double cursor = *Scene().cursor;
    EXPECT_NEAR(cursor, end / 2.0, end / 10.0);
    EXPECT_NE(Scene().values.at(0), atEnd);
    shown_.BackToNow();
    ASSERT_TRUE(WaitUntil([&] { return Scene().cursor == end; }));
}

TEST_F(ChartDisplayTest, MenusChooseLinesAndTheArchiveKeepsThem) {
    Run();
    EXPECT_EQ(Names(), "Planet about Star: Distance; ");
    UserHand::Choose(kTitle, "Semi-major Axis");
    EXPECT_EQ(Names(), "Planet about Star: Distance; Planet about Star: Semi-major Axis; ");
    UserHand::Choose(kTitle, "Eccentricity");
    EXPECT_EQ(Names(), "Planet about Star: Eccentricity; ");
    BMessage choice(FourCC("chbd"));
    choice.AddInt64("Value", 2);
    Locked([&] { display_->MessageReceived(&choice); });
    EXPECT_EQ(Names(), "Planet about Star: Eccentricity; Moon about Star: Eccentricity; ");
    UserHand::Choose(kTitle, "Logarithmic Up");
    EXPECT_TRUE(Scene().up.isLog);
    BMessage archive;
    Locked([&] { return display_->MiniArchive(&archive); });
    UserHand::Choose(kTitle, "Energy Error");
    EXPECT_EQ(Names(), "Energy Error; ");
    Locked([&] { return display_->Regenerate(archive); });
    display_->Changed(-1);
    EXPECT_EQ(Names(), "Planet about Star: Eccentricity; Moon about Star: Eccentricity; ");
}
