// How the program starts where it ended badly, or cannot start at all.
#include <csignal>

#include "SampleDocument.h"
#include "SimulationDesktopTest.h"

namespace {

const char* const kOffer = "^Recovered Simulation$";

class StartingDesktopTest : public SimulationDesktopTest {
protected:
    // The files in the folder of recovery copies.
    [[nodiscard]] std::vector<std::string> Copies() const {
        std::vector<std::string> paths;
        const auto folder = desktop_->Folder() / "state" / "orvek" / "recovery";
        if (std::filesystem::exists(folder))
            for (const auto& file : std::filesystem::directory_iterator(folder))
                paths.push_back(file.path().string());
        return paths;
    }
    [[nodiscard]] std::optional<ChildProcess::Ending> EndingOf(const char* argument) {
        StartProgram(argument == nullptr ? std::vector<std::string>{}
                                         : std::vector<std::string>{argument});
        return program_->Wait(DesktopSession::kPatience);
    }
};

}  // namespace

TEST_F(StartingDesktopTest, WhatASignalCutShortIsOfferedAndIsUnsavedWork) {
    const Window window = OpenExample("circumbinary");
    const std::string path = (desktop_->Folder() / "circumbinary.orvek").string();
    const std::string original = Bytes(path);
    Enter(window, kName, "Lost");
    RunAWhile(window);
    desktop_->Press(window, "ctrl+g");
    EXPECT_TRUE(IsMarked(window, true));
    program_->Signal(SIGTERM);
    EXPECT_TRUE(EndsWell());
    EXPECT_EQ(Bytes(path), original);
    ASSERT_EQ(Copies().size(), 1u);
    const auto kept = Read(Copies().front());

    StartProgram({});
    const Window offer = desktop_->WaitForWindow(kOffer);
    ASSERT_FALSE(offer.empty());
    // "Recover" has the keyboard.
    desktop_->Press(offer, "space");
    const Window recovered = WaitForSimulation(path);
    ASSERT_FALSE(recovered.empty());
    EXPECT_TRUE(IsMarked(recovered, true));
    EXPECT_TRUE(desktop_->WaitForNoWindow("^New Simulation$"));
    EXPECT_EQ(Bytes(path), original);
    Save(recovered, path);
    const auto saved = Read(path);
    EXPECT_EQ(Outline(saved->Root()), "Two suns(Two suns(Two suns))");
    EXPECT_EQ(Outline(saved->Root()), Outline(kept->Root()));
    EXPECT_EQ(BitsOf(saved.get()), BitsOf(kept.get()));
    EXPECT_GT(BitsOf(saved.get()).time, 0);
    EXPECT_NE(BodyNamed(saved.get(), "Lost"), nullptr);
    EXPECT_TRUE(Copies().empty());
}

TEST_F(StartingDesktopTest, LaterKeepsTheCopyAndDiscardDoesNot) {
    const Window window = OpenExample("circumbinary");
    Enter(window, kName, "Lost");
    EXPECT_TRUE(IsMarked(window, true));
    program_->Signal(SIGTERM);
    EXPECT_TRUE(EndsWell());
    // Both stand after "Recover", where the Tab key begins again with the first one.
    for (const int tabs : {2, 1}) {
        StartProgram({});
        const Window offer = desktop_->WaitForWindow(kOffer);
        ASSERT_FALSE(offer.empty());
        EXPECT_EQ(Copies().size(), 1u);
        desktop_->Activate(offer);
        desktop_->Press("Tab", tabs);
        desktop_->Press("Return");
        EXPECT_TRUE(desktop_->WaitForNoWindow(kOffer));
        desktop_->Press(desktop_->WaitForWindow("^New Simulation$"), "ctrl+q");
        EXPECT_TRUE(EndsWell());
    }
    EXPECT_TRUE(Copies().empty());
}

TEST_F(StartingDesktopTest, WithoutADisplayItTellsWhatItCanAndEnds) {
    const auto ended = [](int status) { return ChildProcess::Ending{status, 0}; };
    for (const auto& display : {std::optional<std::string>(), std::optional<std::string>(":0.x")}) {
        desktop_->Variables()["DISPLAY"] = display;
        const std::size_t before = desktop_->Output().size();
        EXPECT_EQ(EndingOf(nullptr), ended(1));
        const std::string said = desktop_->Output().substr(before);
        // One line, and where to go instead.
        EXPECT_NE(said.find("orvek-run"), std::string::npos) << said;
        EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
        EXPECT_EQ(EndingOf("--help"), ended(0));
        EXPECT_EQ(EndingOf("--version"), ended(0));
        EXPECT_EQ(EndingOf("--no-such-option"), ended(1));
    }
}
