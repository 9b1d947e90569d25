// Documents come into the program by the open panel and by the mouse.
#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "Tests/Desktop/DesktopTest.h"

namespace {

const char* const kPanel = "^Open$";
const char* const kUntitled = "^New Simulation$";

class OpeningDesktopTest : public DesktopTest {
protected:
    // Types what the open panel shall open: `"one" "another"`.
    void Choose(const std::string& files) {
        const Window panel = desktop_->WaitForWindow(kPanel);
        ASSERT_FALSE(panel.empty());
        desktop_->Activate(panel);
        desktop_->Type(files);
        desktop_->Press("Return");
        ASSERT_TRUE(desktop_->WaitForNoWindow(kPanel));
    }
    [[nodiscard]] std::size_t CountSimulations() const {
        return desktop_->WindowsTitled("^(New Simulation|[a-z-]+\\.orvek)[*]?$").size();
    }
};

}  // namespace

TEST_F(OpeningDesktopTest, OfSeveralFilesOverAnUntouchedWindowTheLastStays) {
    const std::string eight = CopyExample("figure-eight");
    const std::string moon = CopyExample("earth-moon");
    const std::string triangle = CopyExample("pythagorean");
    StartProgram({});
    desktop_->Press(desktop_->WaitForWindow(kUntitled), "ctrl+o");
    Choose('"' + eight + "\" \"" + moon + "\" \"" + triangle + '"');
    const Window window = WaitForSimulation(triangle);
    EXPECT_TRUE(desktop_->WaitForNoWindow(kUntitled));
    EXPECT_EQ(CountSimulations(), 1u);
    // It is untouched no longer.
    desktop_->Press(window, "ctrl+o");
    Choose(eight);
    EXPECT_FALSE(WaitForSimulation(eight).empty());
    EXPECT_EQ(CountSimulations(), 2u);
    EXPECT_EQ(desktop_->Title(window), "pythagorean.orvek");
}

// A display takes it for its simulation.
TEST_F(OpeningDesktopTest, AFileThatIsDroppedOnAWindowIsOpened) {
    const Window window = OpenExample("figure-eight");
    const Window display = desktop_->WaitForWindow("^Projection of ");
    for (const auto& [name, target] : {std::pair("earth-moon", window), {"pythagorean", display}}) {
        const std::string path = CopyExample(name);
        EXPECT_TRUE(desktop_->Drop(path, target));
        EXPECT_FALSE(WaitForSimulation(path).empty());
    }
    EXPECT_EQ(CountSimulations(), 3u);
}

// Neither its window nor its display covers the other's.
TEST_F(OpeningDesktopTest, ADocumentThatIsOpenedTwiceStandsBesideItself) {
    const std::string path = CopyExample("figure-eight");
    StartProgram({path, path});
    for (const std::string title : {"figure-eight.orvek", "Projection of figure-eight.orvek"}) {
        const Window first = desktop_->WaitForWindow('^' + title + '$');
        const Window second =
            desktop_->WaitForWindow('^' + title + " .window 2 of this document.$");
        ASSERT_FALSE(first.empty() || second.empty()) << title;
        const QPoint aside = desktop_->Frame(second).topLeft() - desktop_->Frame(first).topLeft();
        EXPECT_GE(std::max(std::abs(aside.x()), std::abs(aside.y())), 20) << title;
    }
}

// The reason stands in as many lines as it takes, and the window grows.
TEST_F(OpeningDesktopTest, WhyAFileIsNotOpenedIsToldInFull) {
    const std::string path =
        (desktop_->Folder() / "what-was-left-of-the-second-exercise-of-the-course").string();
    std::ofstream(path) << Bytes(CopyExample("figure-eight")).substr(0, 300);
    StartProgram({path});
    const Window told = desktop_->WaitForWindow(kUntitled);
    ASSERT_TRUE(Says("cannot be opened"));
    desktop_->Press(told, "ctrl+n");
    ASSERT_TRUE(DesktopSession::WaitFor([&] { return CountSimulations() == 2; }));
    const std::vector<Window> windows = desktop_->WindowsTitled(kUntitled);
    const Window other = windows[0] == told ? windows[1] : windows[0];
    EXPECT_TRUE(DesktopSession::WaitFor(
        [&] { return desktop_->Frame(told).height() >= desktop_->Frame(other).height() + 10; }));
}

TEST_F(OpeningDesktopTest, ThePanelKeepsTheProgramAliveUntilItIsCancelled) {
    const Window window = OpenExample("figure-eight");
    const std::string moon = CopyExample("earth-moon");
    desktop_->Press(window, "ctrl+shift+w");
    EXPECT_TRUE(desktop_->WaitForNoWindow("figure-eight"));
    Choose(moon);
    const Window second = WaitForSimulation(moon);
    ASSERT_FALSE(second.empty());
    // With a window, cancelling is nothing but that.
    desktop_->Press(second, "ctrl+o");
    desktop_->Press(desktop_->WaitForWindow(kPanel), "Escape");
    EXPECT_TRUE(desktop_->WaitForNoWindow(kPanel));
    desktop_->Press(second, "ctrl+o");
    const Window panel = desktop_->WaitForWindow(kPanel);
    desktop_->Press(second, "ctrl+w");
    EXPECT_TRUE(desktop_->WaitForNoWindow("earth-moon"));
    EXPECT_TRUE(program_->IsRunning());
    desktop_->Press(panel, "Escape");
    EXPECT_TRUE(EndsWell());
}
