// The application as it starts, opens documents and ends.
#include <gtest/gtest.h>

#include <fstream>

#include "AbEpoch.h"
#include "AppDefs.h"
#include "AppDriver.h"
#include "BNode.h"
#include "BNodeInfo.h"
#include "BoxHand.h"
#include "ProgramMessages.h"
#include "Simulation.h"
#include "SimulationFile.h"
#include "TestFolder.h"
#include "WindowServer.h"

namespace {

constexpr const char* kQuestion = "Orvek (New Simulation): Message";

class LaunchTest : public testing::Test {
protected:
    std::string Document(const std::string& name) const {
        const std::string path = folder_.Path() + '/' + name;
        EXPECT_FALSE(SimulationFile::Write(path, TestResources().NewSimulation()).Failed());
        BNode node(path.c_str());
        BNodeInfo(&node).SetType(nullptr);
        BNodeInfo(&node).SetPreferredApp(nullptr);
        return path;
    }
    static bool Shows(AppDriver* app, const std::string& titles) {
        return AppDriver::WaitUntil([&] { return app->Titles() == titles; });
    }
    static bool Ends(const AppDriver& app) {
        return AppDriver::WaitUntil([&] { return app.HasEnded(); });
    }

    const TestFolder folder_;
};

std::string TypeOf(const std::string& path) {
    BNode node(path.c_str());
    std::string type;
    return BNodeInfo(&node).GetType(&type) == B_OK ? type : "";
}

std::string ApplicationOf(const std::string& path) {
    BNode node(path.c_str());
    std::string signature;
    return BNodeInfo(&node).GetPreferredApp(&signature) == B_OK ? signature : "";
}

BPoint Corner(Simulation* window) {
    EXPECT_TRUE(window->Lock());
    const BRect frame = window->Frame();
    window->Unlock();
    return {frame.left, frame.top};
}

bool HasAttributes(const std::string& path) {
    BNode node(path.c_str());
    return node.WriteAttr("test", B_RAW_TYPE, "x", 1) == B_OK;
}

void Overwrite(const std::string& path, int position, char letter) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(position);
    file.put(letter);
}

TEST_F(LaunchTest, WithoutFilesOpensOneUntitledSimulation) {
    AppDriver app(folder_.Path());
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    EXPECT_EQ(app.Simulations().size(), 1u);
    EXPECT_EQ(AbEpoch::origin.Name(), "Origin");
    // Nothing was changed: no question.
    app.Post(B_QUIT_REQUESTED);
    EXPECT_TRUE(Ends(app));
}

TEST_F(LaunchTest, FilesOpenTheirOwnWindowsAndGetMissingAttributes) {
    const std::string plain = Document("plain");
    const std::string marked = Document("marked");
    BNode node(marked.c_str());
    BNodeInfo(&node).SetType("text/plain");
    AppDriver app(folder_.Path(), {plain, marked});
    EXPECT_TRUE(Shows(&app, "plain,marked"));
    EXPECT_EQ(app.Simulations().size(), 2u);
    if (!HasAttributes(plain)) GTEST_SKIP() << "this file system has no attributes";
    EXPECT_EQ(TypeOf(plain), SimulationFile::kType);
    EXPECT_EQ(ApplicationOf(plain), SimulationFile::kPreferredApplication);
    EXPECT_EQ(TypeOf(marked), "text/plain");
    EXPECT_EQ(ApplicationOf(marked), SimulationFile::kPreferredApplication);
}

TEST_F(LaunchTest, WhatIsNoDocumentIsNotOpenedAndStandardErrorSaysWhy) {
    const std::string otherTag = Document("other tag");
    Overwrite(otherTag, 7, '1');
    const std::string damaged = Document("damaged");
    Overwrite(damaged, 8, '?');
    testing::internal::CaptureStderr();
    {
        AppDriver app(folder_.Path(), {otherTag, damaged, folder_.Path() + "/missing"});
        EXPECT_TRUE(Shows(&app, "New Simulation"));
        EXPECT_EQ(app.Simulations().size(), 1u);
    }
    const std::string said = testing::internal::GetCapturedStderr();
    for (const char* name : {"/other tag: ", "/damaged: ", "/missing: "})
        EXPECT_NE(said.find(name), std::string::npos) << said;
    EXPECT_EQ(TypeOf(otherTag), "");
    // It has the tag, so it counts as a document.
    EXPECT_EQ(TypeOf(damaged), HasAttributes(damaged) ? SimulationFile::kType : "");
}

TEST_F(LaunchTest, FilesReplaceAnUntouchedWindowOnly) {
    const std::vector<std::string> files{Document("1"), Document("2"), Document("3")};
    AppDriver app(folder_.Path());
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    Simulation* const first = app.Simulations().front();
    // Of several files the last one stays.
    app.Choose(files, first);
    EXPECT_TRUE(Shows(&app, "3"));
    EXPECT_EQ(app.Simulations(), std::vector<Simulation*>{first});
    // It is untouched no longer.
    app.Choose({files[0]}, first);
    EXPECT_TRUE(Shows(&app, "3,1"));
    app.Post(kNewSimulation);
    EXPECT_TRUE(Shows(&app, "3,1,New Simulation"));
    // One new simulation does not hide another.
    EXPECT_NE(Corner(app.Simulations()[2]), Corner(first));
    app.Edit(2);
    app.Choose({files[1]}, app.Simulations()[2]);
    EXPECT_TRUE(Shows(&app, "3,1,New Simulation,2"));
    // A window that is gone by now.
    Simulation* const gone = app.Simulations()[1];
    app.Close(1);
    EXPECT_TRUE(Shows(&app, "3,New Simulation,2"));
    app.Choose({files[0]}, gone);
    EXPECT_TRUE(Shows(&app, "3,New Simulation,2,1"));
}

TEST_F(LaunchTest, TheOpenPanelKeepsTheProgramAlive) {
    AppDriver app(folder_.Path());
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    app.Post(kOpen);
    EXPECT_TRUE(AppDriver::WaitUntil(BoxHand::IsPanelSeen));
    BoxHand::CancelPanel();
    EXPECT_TRUE(AppDriver::WaitUntil([] { return !BoxHand::IsPanelSeen(); }));
    app.Settle();
    EXPECT_EQ(app.Titles(), "New Simulation");
    app.Post(kOpen);
    EXPECT_TRUE(AppDriver::WaitUntil(BoxHand::IsPanelSeen));
    app.Close(0);
    EXPECT_TRUE(AppDriver::WaitUntil([&] { return app.Simulations().empty(); }));
    app.Settle();
    app.Settle();
    EXPECT_FALSE(app.HasEnded());
    BoxHand::CancelPanel();
    EXPECT_TRUE(Ends(app));
}

TEST_F(LaunchTest, QuittingAsksOneWindowAfterTheOther) {
    AppDriver app(folder_.Path(), {Document("saved")});
    EXPECT_TRUE(Shows(&app, "saved"));
    app.Post(kNewSimulation);
    app.Post(kNewSimulation);
    EXPECT_TRUE(Shows(&app, "saved,New Simulation,New Simulation"));
    app.Edit(1);
    app.Edit(2);
    // A window that is open while the panel is: it does not keep the program alive now.
    app.Post(kOpen);
    app.Post(B_QUIT_REQUESTED);
    BoxHand::WaitFor(kQuestion);
    EXPECT_EQ(BoxHand::Count(kQuestion), 1);
    BoxHand::Press(kQuestion, "Cancel");
    EXPECT_TRUE(Shows(&app, "New Simulation,New Simulation"));
    EXPECT_TRUE(AppDriver::WaitUntil([] { return BoxHand::Count(kQuestion) == 0; }));

    // That was the end of quitting: a window that is closed now is closed alone.
    app.Settle();
    app.Close(0);
    BoxHand::WaitFor(kQuestion);
    BoxHand::Press(kQuestion, "Don't Save");
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    EXPECT_TRUE(AppDriver::WaitUntil([] { return BoxHand::Count(kQuestion) == 0; }));
    app.Settle();
    EXPECT_EQ(BoxHand::Count(kQuestion), 0);

    app.Post(kNewSimulation);
    EXPECT_TRUE(Shows(&app, "New Simulation,New Simulation"));
    app.Edit(1);
    app.Post(B_QUIT_REQUESTED);
    for (int i = 0; i < 2; i++) {
        BoxHand::WaitFor(kQuestion);
        EXPECT_EQ(BoxHand::Count(kQuestion), 1);
        BoxHand::Press(kQuestion, "Don't Save");
        EXPECT_TRUE(
            AppDriver::WaitUntil([&] { return app.HasEnded() || app.Simulations().size() == 1u; }));
    }
    EXPECT_TRUE(Ends(app));
}

TEST_F(LaunchTest, TheAboutBoxIsOneAndGoesWhenItIsClosed) {
    AppDriver app(folder_.Path());
    app.Post(B_ABOUT_REQUESTED);
    app.Post(B_ABOUT_REQUESTED);
    BoxHand::WaitFor("About Orvek");
    app.Settle();
    EXPECT_EQ(BoxHand::Count("About Orvek"), 1);
    BoxHand::PressEscape("About Orvek");
    EXPECT_TRUE(AppDriver::WaitUntil([] { return BoxHand::Count("About Orvek") == 0; }));
    app.Settle();
    app.Post(B_ABOUT_REQUESTED);
    BoxHand::WaitFor("About Orvek");
    BoxHand::PressEnter("About Orvek");
    EXPECT_TRUE(AppDriver::WaitUntil([] { return BoxHand::Count("About Orvek") == 0; }));
}

// --- Recovery copies ---

class RecoveryTest : public LaunchTest {
protected:
    static constexpr const char* kOffer = "Recovered Simulation";

    // A run of the program that the end of the session cuts short.
    void LeaveCopies(int count) {
        AppDriver app(folder_.Path());
        for (int i = 0; i < count; i++) {
            if (i > 0) app.Post(kNewSimulation);
            EXPECT_TRUE(AppDriver::WaitUntil([&] {
                const std::string titles = app.Titles();
                return std::count(titles.begin(), titles.end(), ',') == i && !titles.empty();
            }));
            app.Edit(static_cast<std::size_t>(i));
        }
    }
    [[nodiscard]] std::size_t CountCopies() const {
        return RecoveryFolder(folder_.Path() + "/state/orvek/recovery").List().size();
    }
};

TEST_F(RecoveryTest, TheEndOfTheDesktopsSessionWaitsForTheCopies) {
    AppDriver app(folder_.Path());
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    app.Edit(0);
    BoxHand::EndSession();
    EXPECT_EQ(CountCopies(), 1u);
    EXPECT_TRUE(Ends(app));
}

TEST_F(RecoveryTest, CopiesAreOfferedOneAfterTheOther) {
    LeaveCopies(3);
    EXPECT_EQ(CountCopies(), 3u);
    AppDriver app(folder_.Path());
    for (const char* answer : {"Later", "Discard", "Later"}) {
        BoxHand::WaitFor(kOffer);
        EXPECT_EQ(BoxHand::Count(kOffer), 1);
        const auto box = BoxHand::Number(kOffer);
        BoxHand::Press(kOffer, answer);
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return BoxHand::Number(kOffer) != box; }));
        app.Settle();
    }
    EXPECT_TRUE(AppDriver::WaitUntil([&] { return BoxHand::Count(kOffer) == 0; }));
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    EXPECT_EQ(CountCopies(), 2u);
}

TEST_F(RecoveryTest, ARecoveredSimulationTakesTheEmptyOnesPlaceAndIsNotSaved) {
    LeaveCopies(1);
    AppDriver app(folder_.Path());
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    Simulation* const empty = app.Simulations().front();
    BoxHand::WaitFor(kOffer);
    BoxHand::Press(kOffer, "Recover");
    EXPECT_TRUE(AppDriver::WaitUntil([&] {
        const auto open = app.Simulations();
        return open.size() == 1 && open[0] != empty && app.Titles() == "New Simulation";
    }));
    app.Close(0);
    BoxHand::WaitFor(kQuestion);
    EXPECT_EQ(BoxHand::Count(kQuestion), 1);
}

}  // namespace
