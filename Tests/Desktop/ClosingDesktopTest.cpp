// Unsaved simulations are closed with every answer there is, or by a signal.
#include <csignal>
#include <filesystem>

#include "Tests/Desktop/DesktopTest.h"
#include "Tests/Simulation/Document/SampleDocument.h"

using ClosingDesktopTest = DesktopTest;

TEST_F(ClosingDesktopTest, EachAnswerDoesWhatItSays) {
    const Window window = OpenExample("figure-eight");
    const std::string original = Bytes(path_);
    EXPECT_EQ(desktop_->Title(window), "figure-eight.orvek");
    Enter(window, kName, "Zoe");

    for (const Answer no : {Answer::kCancel, Answer::kEscape}) {
        desktop_->Press(window, "ctrl+w");
        GiveAnswer(no);
        EXPECT_EQ(desktop_->Title(window), "figure-eight.orvek*");
    }
    EXPECT_EQ(Bytes(path_), original);
    // The last window takes the program with it.
    desktop_->Close(window);
    GiveAnswer(Answer::kDontSave);
    EXPECT_TRUE(EndsWell());
    EXPECT_EQ(Bytes(path_), original);

    StartProgram({path_});
    const Window again = WaitForSimulation(path_);
    // Half a word counts, too.
    GoTo(again, kName);
    desktop_->Type("Yv");
    desktop_->Press(again, "ctrl+w");
    GiveAnswer(Answer::kSave);
    EXPECT_TRUE(EndsWell());
    EXPECT_NE(BodyNamed(Read(path_).get(), "Yv"), nullptr);
}

TEST_F(ClosingDesktopTest, TheStandingAnswerIsKeptUntilItIsTakenBack) {
    const Window first = OpenExample("figure-eight");
    Enter(first, kName, "Zoe");
    desktop_->Press(first, "ctrl+w");
    // Deliberately, whatever is answered with it: later ones are closed without saving.
    GiveAnswer(Answer::kSave, true);
    EXPECT_TRUE(EndsWell());
    const std::string saved = Bytes(path_);
    EXPECT_NE(BodyNamed(Read(path_).get(), "Zoe"), nullptr);

    for (const bool isTakenBack : {false, true}) {
        StartProgram({path_});
        const Window window = WaitForSimulation(path_);
        Enter(window, kName, "Yvonne");
        EXPECT_TRUE(IsMarked(window, true));
        if (isTakenBack) {
            desktop_->Press(window, "alt+o");
            desktop_->Press("w");
        }
        desktop_->Press(window, "ctrl+w");
        if (isTakenBack) GiveAnswer(Answer::kDontSave);
        EXPECT_TRUE(EndsWell());
        EXPECT_EQ(Bytes(path_), saved);
        // What was closed without a question can be had back.
        const std::vector<RecoveryCopy> copies = Copies();
        EXPECT_EQ(copies.size(), isTakenBack ? 0u : 1u);
        for (const RecoveryCopy& copy : copies)
            std::filesystem::remove(copy.path);
    }
}

TEST_F(ClosingDesktopTest, WhatASignalCutShortIsOfferedAndIsUnsavedWork) {
    const Window window = OpenExample("circumbinary");
    const std::string original = Bytes(path_);
    Enter(window, kName, "Lost");
    RunAWhile(window);
    desktop_->Press(window, "ctrl+g");
    EXPECT_TRUE(IsMarked(window, true));
    program_->Signal(SIGTERM);
    EXPECT_TRUE(EndsWell());
    EXPECT_EQ(Bytes(path_), original);
    ASSERT_EQ(Copies().size(), 1u);
    const auto kept = Read(Copies()[0].path);

    StartProgram({});
    // "Recover" has the keyboard.
    desktop_->Press(desktop_->WaitForWindow("^Recovered Simulation$"), "space");
    const Window recovered = WaitForSimulation(path_);
    EXPECT_TRUE(IsMarked(recovered, true));
    EXPECT_TRUE(desktop_->WaitForNoWindow("^New Simulation$"));
    EXPECT_EQ(Bytes(path_), original);
    Save(recovered);
    const auto saved = Read(path_);
    EXPECT_EQ(Outline(saved->Root()), "Two suns(Two suns(Two suns))");
    EXPECT_EQ(BitsOf(saved.get()), BitsOf(kept.get()));
    EXPECT_NE(BodyNamed(saved.get(), "Lost"), nullptr);
    EXPECT_TRUE(DesktopSession::WaitFor([&] { return Copies().empty(); }));
}
