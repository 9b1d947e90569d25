// The gallery of examples: by hand, and on a first start.
#include <gtest/gtest.h>

#include <algorithm>

#include "Application/InstalledFiles.h"
#include "Simulation/Simulation.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Application/WindowHand.h"
#include "Tests/Platform/TestFolder.h"

namespace {

using WindowHand::Key;

constexpr const char* kGallery = "Examples";
constexpr const char* kNew = "New Simulation";

TEST(Gallery, OpensACopyAndHoldsNothingUp) {
    const TestFolder folder;
    AppDriver app(folder.Path());
    WindowHand::WaitFor("Projection of New Simulation");
    const std::vector<Example> examples = InstalledExamples();
    ASSERT_GE(examples.size(), 16u);
    for (const Example& example : examples) {
        EXPECT_EQ(example.lines.size(), 2u) << example.path;
        EXPECT_FALSE(example.source.empty()) << example.path;
    }

    EXPECT_TRUE(examples[0].path.ends_with("/planets.orvek"));
    EXPECT_TRUE(
        std::is_sorted(examples.begin() + 1, examples.end(),
                       [](const Example& a, const Example& b) { return a.title < b.title; }));

    WindowHand::Choose(kNew, "Orvek/Examples…");
    WindowHand::WaitFor(kGallery);
    EXPECT_TRUE(app.Shows(kNew)) << "it is no simulation: " << app.Titles();
    WindowHand::Activate(kGallery);
    // Another one than the first, which is selected when the window opens, and not a thousand
    // stars.
    for (int32 row = 0; row < 2; row++)
        WindowHand::Press(kGallery, Key::kDown);
    WindowHand::Press(kGallery, Key::kEnter);
    const std::string& path = examples[2].path;
    EXPECT_TRUE(app.Shows(path.substr(path.rfind('/') + 1))) << app.Titles();

    // The button does the same with the row that is selected.
    WindowHand::Activate(kGallery);
    WindowHand::Press(kGallery, Key::kHome);
    WindowHand::Click(kGallery, "Open");
    EXPECT_TRUE(AppDriver::WaitUntil([&] {
        return app.Titles().find("planets.orvek") != std::string::npos;
    })) << app.Titles();

    WindowHand::Activate(kGallery);
    WindowHand::Press(kGallery, Key::kEscape);
    EXPECT_TRUE(AppDriver::WaitUntil([] { return WindowHand::Count(kGallery) == 0; }));
    app.Post(ExampleMenu::kShowGallery);
    WindowHand::WaitFor(kGallery);
    app.Close(1);
    app.Close(0);
    EXPECT_TRUE(app.Ends());
}

TEST(Gallery, IsShownOnTheFirstStartOnly) {
    constexpr auto kWelcome = SimApp::Welcome::kGallery;
    const TestFolder folder;
    {
        // Not beside a document that was asked for.
        AppDriver app(folder.Path(), {WriteDocument(folder.Path("system"))}, kWelcome);
        WindowHand::WaitFor("system");
        app.Settle();
        EXPECT_EQ(WindowHand::Count(kGallery), 0);
    }
    {
        AppDriver app(folder.Path(), {}, kWelcome);
        WindowHand::WaitFor(kGallery);
        EXPECT_TRUE(app.Shows(kNew)) << app.Titles();
    }
    AppDriver app(folder.Path(), {}, kWelcome);
    WindowHand::WaitFor("Projection of New Simulation");
    app.Settle();
    EXPECT_EQ(WindowHand::Count(kGallery), 0);
}

}  // namespace
