// Documents come into the program on every way there is.
#include <fstream>

#include "FileDrop.h"
#include "SimulationDesktopTest.h"

namespace {

const char* const kPanel = "^Open$";
const char* const kUntitled = "^New Simulation$";

class OpeningDesktopTest : public SimulationDesktopTest {
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
    // A second start with these files, which ends with that status.
    void StartAgain(const std::vector<std::string>& arguments, int status) {
        std::vector<std::string> command{ORVEK_PROGRAM};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const auto second = desktop_->Start(command);
        EXPECT_EQ(second->Wait(DesktopSession::kPatience), (ChildProcess::Ending{status, 0}));
    }
    [[nodiscard]] bool Drop(const std::string& path, const Window& window) const {
        return DropFile(desktop_->Display(), window, {100, 100}, path, DesktopSession::kPatience);
    }
    [[nodiscard]] std::size_t CountSimulations() const {
        return desktop_->WindowsTitled("^(New Simulation|[a-z-]+\\.orvek)[*]?$").size();
    }
    [[nodiscard]] bool Says(const std::string& file) const {
        return DesktopSession::WaitFor(
            [&] { return desktop_->Output().find(file + ": ") != std::string::npos; });
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
    EXPECT_FALSE(WaitForSimulation(triangle).empty());
    EXPECT_TRUE(desktop_->WaitForNoWindow(kUntitled));
    EXPECT_EQ(CountSimulations(), 1u);
    // It is untouched no longer.
    const Window window = WaitForSimulation(triangle);
    desktop_->Press(window, "ctrl+o");
    Choose(eight);
    EXPECT_FALSE(WaitForSimulation(eight).empty());
    EXPECT_EQ(CountSimulations(), 2u);
    EXPECT_EQ(desktop_->Title(window), "pythagorean.orvek");
}

TEST_F(OpeningDesktopTest, WhatIsNoDocumentIsToldOnStandardErrorAlone) {
    const std::string letter = (desktop_->Folder() / "letter").string();
    std::ofstream(letter) << "Dear Sir or Madam";
    StartProgram({});
    const Window window = desktop_->WaitForWindow(kUntitled);
    desktop_->Press(window, "ctrl+o");
    Choose(letter);
    EXPECT_TRUE(Says(letter));
    // No box comes, and the window that it would have replaced is what it was.
    desktop_->Press(window, "ctrl+o");
    EXPECT_FALSE(desktop_->WaitForWindow(kPanel).empty());
    EXPECT_EQ(desktop_->WindowsTitled(".").size(), 3u);
    EXPECT_EQ(desktop_->Title(window), "New Simulation");
}

TEST_F(OpeningDesktopTest, ASecondStartOpensItsFilesInTheFirst) {
    const Window first = OpenExample("figure-eight");
    const std::string moon = CopyExample("earth-moon");
    const std::string triangle = CopyExample("pythagorean");
    StartAgain({moon, triangle}, 0);
    EXPECT_FALSE(WaitForSimulation(moon).empty());
    EXPECT_FALSE(WaitForSimulation(triangle).empty());
    const std::string missing = (desktop_->Folder() / "missing").string();
    StartAgain({missing}, 1);
    EXPECT_TRUE(Says(missing));
    StartAgain({}, 0);
    EXPECT_EQ(CountSimulations(), 3u);

    // What was closed is opened again from the list of recent documents, by its letter.
    desktop_->Press(WaitForSimulation(triangle), "ctrl+w");
    ASSERT_TRUE(desktop_->WaitForNoWindow("^pythagorean"));
    desktop_->Press(first, "alt+o");
    desktop_->Press("r");
    ASSERT_TRUE(desktop_->WaitForMenus(2));
    desktop_->Press("p");
    EXPECT_FALSE(WaitForSimulation(triangle).empty());
    desktop_->Press(first, "ctrl+q");
    EXPECT_TRUE(EndsWell());
}

TEST_F(OpeningDesktopTest, ADroppedFileIsOpened) {
    const Window window = OpenExample("figure-eight");
    const std::string moon = CopyExample("earth-moon");
    EXPECT_TRUE(Drop(moon, window));
    EXPECT_FALSE(WaitForSimulation(moon).empty());
    EXPECT_EQ(CountSimulations(), 2u);
    // A display takes them for its simulation.
    const std::string triangle = CopyExample("pythagorean");
    const Window display = desktop_->WaitForWindow("^Projection of earth-moon");
    EXPECT_TRUE(Drop(triangle, display));
    EXPECT_FALSE(WaitForSimulation(triangle).empty());
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
