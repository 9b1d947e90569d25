// The guide, and the examples that come with the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "Application/InstalledFiles.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/RecentDocuments.h"
#include "Simulation/Simulation.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Application/WindowHand.h"
#include "Tests/Platform/TestFolder.h"

namespace {

using WindowHand::Key;

constexpr const char* kGuide = "Guide to Orvek";
constexpr const char* kNew = "New Simulation";
const std::string kPlanets =
    "Orvek/Open Example/The Sun with its nine planets on 1 January 2000, 12 h TDB (J2000).";

// Presses the key until the guide is there: a window that is shown meanwhile takes the keyboard.
bool IsOpenedFrom(const char* window) {
    if (WindowHand::Count(kGuide) == 1) return true;
    WindowHand::Activate(window);
    WindowHand::Press(window, Key::kHelp);
    return false;
}

TEST(Help, TheKeyOpensTheGuide) {
    const TestFolder folder;
    AppDriver app(folder.Path());
    WindowHand::WaitFor("Projection of New Simulation");
    EXPECT_TRUE(AppDriver::WaitUntil([] { return IsOpenedFrom(kNew); }));
    EXPECT_TRUE(WindowHand::PageText(kGuide).starts_with("Orvek: the guide"));
    WindowHand::Press(kGuide, Key::kEscape);
    EXPECT_TRUE(AppDriver::WaitUntil([] { return WindowHand::Count(kGuide) == 0; }));

    // The first link leads to the first lesson, which stays where it is while the guide is closed.
    WindowHand::Choose(kNew, "Help/Guide");
    WindowHand::WaitFor(kGuide);
    WindowHand::Press(kGuide, Key::kTab);
    WindowHand::Press(kGuide, Key::kEnter);
    const auto isAtLesson = [] { return WindowHand::PageText(kGuide).starts_with("First lesson"); };
    EXPECT_TRUE(AppDriver::WaitUntil(isAtLesson)) << WindowHand::PageText(kGuide).substr(0, 100);
    WindowHand::Close(kGuide);
    EXPECT_TRUE(AppDriver::WaitUntil([] { return WindowHand::Count(kGuide) == 0; }));
    WindowHand::Choose(kNew, "Help/Guide");
    WindowHand::WaitFor(kGuide);
    EXPECT_TRUE(isAtLesson());
}

TEST(Help, AnExampleIsOpenedAsACopy) {
    const TestFolder folder;
    AppDriver app(folder.Path());
    WindowHand::WaitFor(kNew);
    // One item each; what there is to see is its tip.
    const std::vector<std::string> items = WindowHand::Items(kNew);
    const std::string tip = WindowHand::Tip(kNew, kPlanets);
    EXPECT_TRUE(tip.starts_with("Nine nearly round tracks")) << tip;
    EXPECT_NE(tip.find("\nof the plane"), std::string::npos) << tip;
    const auto isExample = [](const std::string& item) {
        return item.starts_with("Orvek/Open Example/");
    };
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count_if(items, isExample)),
              InstalledExamples().size());

    // It takes the place of the simulation that nobody has touched, and saving it asks where.
    WindowHand::Choose(kNew, kPlanets);
    EXPECT_TRUE(app.Shows("planets.orvek")) << app.Titles();
    EXPECT_TRUE(RecentDocuments::Shared().Paths().empty());
    app.Edit(0);
    WindowHand::Choose("planets.orvek", "File/Save");
    EXPECT_TRUE(AppDriver::WaitUntil(WindowHand::IsPanelSeen));
    WindowHand::CancelPanel();

    // The next one leaves it alone.
    WindowHand::Choose("planets.orvek", kPlanets);
    EXPECT_TRUE(app.Shows("planets.orvek,planets.orvek")) << app.Titles();
}

}  // namespace
