// Unsaved simulations are closed, and the program is quit, with every answer there is.
#include "SimulationDesktopTest.h"

using ClosingDesktopTest = SimulationDesktopTest;

TEST_F(ClosingDesktopTest, EachAnswerDoesWhatItSays) {
    const Window window = OpenExample("figure-eight");
    const std::string path = (desktop_->Folder() / "figure-eight.orvek").string();
    const std::string original = Bytes(path);
    EXPECT_EQ(desktop_->Title(window), "figure-eight.orvek");
    Enter(window, kName, "Zoe");
    EXPECT_TRUE(IsMarked(window, true));

    for (const Answer no : {Answer::kCancel, Answer::kEscape}) {
        desktop_->Press(window, "ctrl+w");
        GiveAnswer(path, no);
        EXPECT_EQ(desktop_->Title(window), "figure-eight.orvek*");
    }
    EXPECT_EQ(Bytes(path), original);
    // The last window takes the program with it.
    desktop_->Close(window);
    GiveAnswer(path, Answer::kDontSave);
    EXPECT_TRUE(EndsWell());
    EXPECT_EQ(Bytes(path), original);

    StartProgram({path});
    const Window again = WaitForSimulation(path);
    // Half a word counts, too.
    GoTo(again, kName);
    desktop_->Type("Yv");
    desktop_->Press(again, "ctrl+w");
    GiveAnswer(path, Answer::kSave);
    EXPECT_TRUE(EndsWell());
    EXPECT_NE(BodyNamed(Read(path).get(), "Yv"), nullptr);
}

TEST_F(ClosingDesktopTest, TheStandingAnswerIsKeptUntilItIsTakenBack) {
    OpenExample("figure-eight");
    const std::string path = (desktop_->Folder() / "figure-eight.orvek").string();
    const Window first = WaitForSimulation(path);
    Enter(first, kName, "Zoe");
    desktop_->Press(first, "ctrl+w");
    // Deliberately, whatever is answered with it: later ones are closed without saving.
    GiveAnswer(path, Answer::kSave, true);
    EXPECT_TRUE(EndsWell());
    const std::string saved = Bytes(path);
    EXPECT_NE(BodyNamed(Read(path).get(), "Zoe"), nullptr);

    StartProgram({path});
    const Window second = WaitForSimulation(path);
    Enter(second, kName, "Yvonne");
    EXPECT_TRUE(IsMarked(second, true));
    desktop_->Press(second, "ctrl+w");
    EXPECT_TRUE(EndsWell());
    EXPECT_EQ(Bytes(path), saved);

    StartProgram({path});
    const Window third = WaitForSimulation(path);
    Enter(third, kName, "Yvonne");
    desktop_->Press(third, "alt+o");
    desktop_->Press("w");
    desktop_->Press(third, "ctrl+w");
    EXPECT_TRUE(IsAsked(path));
    GiveAnswer(path, Answer::kDontSave);
    EXPECT_TRUE(EndsWell());
    EXPECT_EQ(Bytes(path), saved);
}

TEST_F(ClosingDesktopTest, QuittingAsksForEachAndCanBeCancelledHalfway) {
    const std::string eight = CopyExample("figure-eight");
    const std::string moon = CopyExample("earth-moon");
    const std::string triangle = CopyExample("pythagorean");
    StartProgram({eight, moon, triangle});
    const Window first = WaitForSimulation(eight);
    const Window second = WaitForSimulation(moon);
    ASSERT_FALSE(WaitForSimulation(triangle).empty());  // it would take the keyboard
    const std::string original = Bytes(eight);
    Enter(first, kName, "Zoe");
    Enter(second, kName, "Kestrel");
    EXPECT_TRUE(IsMarked(first, true) && IsMarked(second, true));

    desktop_->Press(second, "ctrl+q");
    GiveAnswer(eight, Answer::kDontSave);
    EXPECT_TRUE(desktop_->WaitForNoWindow("^figure-eight"));
    GiveAnswer(moon, Answer::kCancel);
    // Neither the one that was asked for nor the one after it.
    EXPECT_EQ(desktop_->Title(second), "earth-moon.orvek*");
    EXPECT_FALSE(WaitForSimulation(triangle).empty());
    EXPECT_TRUE(program_->IsRunning());

    desktop_->Press(WaitForSimulation(triangle), "ctrl+q");
    GiveAnswer(moon, Answer::kSave);
    EXPECT_TRUE(EndsWell());
    EXPECT_EQ(Bytes(eight), original);
    EXPECT_NE(BodyNamed(Read(moon).get(), "Kestrel"), nullptr);
}
