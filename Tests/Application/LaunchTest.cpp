// The application as it starts, opens documents and ends.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "AppDefs.h"
#include "AppDriver.h"
#include "BNode.h"
#include "BNodeInfo.h"
#include "ProgramMessages.h"
#include "Simulation.h"
#include "SimulationFile.h"
#include "TestFolder.h"
#include "WindowHand.h"

namespace {

constexpr const char* kQuestion = "Orvek (New Simulation): Message";

class LaunchTest : public testing::Test {
protected:
    [[nodiscard]] std::string Path(const std::string& name) const {
        return folder_.Path() + '/' + name;
    }
    // Without attributes.
    std::string Document(const std::string& name) const {
        BNode node(WriteDocument(Path(name)).c_str());
        BNodeInfo(&node).SetType(nullptr);
        BNodeInfo(&node).SetPreferredApp(nullptr);
        return Path(name);
    }

    const TestFolder folder_;
};

// The type and the preferred application.
std::string AttributesOf(const std::string& path) {
    BNode node(path.c_str());
    std::string type;
    std::string application;
    static_cast<void>(BNodeInfo(&node).GetType(&type));
    static_cast<void>(BNodeInfo(&node).GetPreferredApp(&application));
    return type + ' ' + application;
}

void Overwrite(const std::string& path, int position, char letter) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(position);
    file.put(letter);
}

TEST_F(LaunchTest, DocumentsOpenTheirOwnWindowsAndGetMissingAttributes) {
    const std::string plain = Document("plain");
    const std::string marked = Document("marked");
    BNode node(marked.c_str());
    const bool hasAttributes = BNodeInfo(&node).SetType("text/plain") == B_OK;
    const std::string otherTag = Document("other tag");
    Overwrite(otherTag, 7, '1');
    const std::string damaged = Document("damaged");
    Overwrite(damaged, 8, '?');
    testing::internal::CaptureStderr();
    {
        AppDriver app(folder_.Path(), {plain, otherTag, damaged, Path("missing"), marked});
        EXPECT_TRUE(app.Shows("plain,marked"));
        EXPECT_EQ(app.Simulations().size(), 2u);
    }
    const std::string said = testing::internal::GetCapturedStderr();
    for (const char* name : {"/other tag: ", "/damaged: ", "/missing: "})
        EXPECT_NE(said.find(name), std::string::npos) << said;
    if (!hasAttributes) GTEST_SKIP() << "this file system has no attributes";
    const std::string application = SimulationFile::kPreferredApplication;
    EXPECT_EQ(AttributesOf(plain), SimulationFile::kType + (' ' + application));
    EXPECT_EQ(AttributesOf(marked), "text/plain " + application);
    EXPECT_EQ(AttributesOf(otherTag), " ");
    EXPECT_EQ(AttributesOf(damaged), AttributesOf(plain)) << "it has the tag";
}

TEST_F(LaunchTest, FilesReplaceAnUntouchedWindowOnly) {
    const std::vector<std::string> files{Document("1"), Document("2"), Document("3")};
    AppDriver app(folder_.Path());
    EXPECT_TRUE(app.Shows("New Simulation"));
    Simulation* const first = app.Simulations().front();
    // Of several files the last one stays.
    app.Choose(files, first);
    EXPECT_TRUE(app.Shows("3"));
    EXPECT_EQ(app.Simulations(), std::vector<Simulation*>{first});
    // It is untouched no longer.
    app.Choose({files[0]}, first);
    EXPECT_TRUE(app.Shows("3,1"));
    app.Post(kNewSimulation);
    EXPECT_TRUE(app.Shows("3,1,New Simulation"));
    EXPECT_NE(app.Simulations()[2]->Frame(), first->Frame()) << "one does not hide another";
    app.Edit(2);
    app.Choose({files[1]}, app.Simulations()[2]);
    EXPECT_TRUE(app.Shows("3,1,New Simulation,2"));
    // A window that is gone by now.
    Simulation* const gone = app.Simulations()[1];
    app.Close(1);
    EXPECT_TRUE(app.Shows("3,New Simulation,2"));
    app.Choose({files[0]}, gone);
    EXPECT_TRUE(app.Shows("3,New Simulation,2,1"));
}

TEST_F(LaunchTest, QuittingAsksOneWindowAfterTheOther) {
    AppDriver app(folder_.Path(), {Document("saved")});
    EXPECT_TRUE(app.Shows("saved"));
    app.Post(kNewSimulation);
    app.Post(kNewSimulation);
    EXPECT_TRUE(app.Shows("saved,New Simulation,New Simulation"));
    app.Edit(1);
    app.Edit(2);
    // A panel does not keep the program alive now.
    app.Post(kOpen);
    app.Post(B_QUIT_REQUESTED);
    const auto answer = [](const char* label) {
        WindowHand::WaitFor(kQuestion);
        EXPECT_EQ(WindowHand::Count(kQuestion), 1);
        WindowHand::Click(kQuestion, label);
    };
    const auto isAnswered = [] {
        return AppDriver::WaitUntil([] { return WindowHand::Count(kQuestion) == 0; });
    };
    answer("Cancel");
    EXPECT_TRUE(isAnswered());
    EXPECT_TRUE(app.Shows("New Simulation,New Simulation"));

    // That was the end of quitting: a window that is closed now is closed alone.
    app.Settle();
    app.Close(0);
    answer("Don't Save");
    EXPECT_TRUE(app.Shows("New Simulation"));
    EXPECT_TRUE(isAnswered());
    app.Settle();
    EXPECT_EQ(WindowHand::Count(kQuestion), 0);

    app.Post(kNewSimulation);
    EXPECT_TRUE(app.Shows("New Simulation,New Simulation"));
    app.Edit(1);
    app.Post(B_QUIT_REQUESTED);
    answer("Don't Save");
    EXPECT_TRUE(app.Shows("New Simulation"));
    answer("Don't Save");
    EXPECT_TRUE(app.Ends());
}

TEST_F(LaunchTest, ThereIsOneAboutBox) {
    AppDriver app(folder_.Path());
    app.Post(B_ABOUT_REQUESTED);
    app.Post(B_ABOUT_REQUESTED);
    WindowHand::WaitFor("About Orvek");
    app.Settle();
    EXPECT_EQ(WindowHand::Count("About Orvek"), 1);
}

// --- Recovery copies ---

class RecoveryTest : public LaunchTest {
protected:
    static constexpr const char* kOffer = "Recovered Simulation";

    // A run of the program that the end of the session cuts short.
    void LeaveCopies(std::size_t count) {
        AppDriver app(folder_.Path());
        std::string titles = "New Simulation";
        for (std::size_t i = 0; i < count; i++) {
            EXPECT_TRUE(app.Shows(titles));
            app.Edit(i);
            if (i + 1 == count) break;
            app.Post(kNewSimulation);
            titles += ",New Simulation";
        }
    }
    [[nodiscard]] std::size_t CountCopies() const {
        return RecoveryFolder(folder_.Path() + "/state/orvek/recovery").List().size();
    }
};

TEST_F(RecoveryTest, TheEndOfTheDesktopsSessionWaitsForTheCopies) {
    AppDriver app(folder_.Path());
    EXPECT_TRUE(app.Shows("New Simulation"));
    app.Edit(0);
    WindowHand::EndSession();
    EXPECT_EQ(CountCopies(), 1u);
    EXPECT_TRUE(app.Ends());
}

TEST_F(RecoveryTest, CopiesAreOfferedOneAfterTheOther) {
    LeaveCopies(3);
    EXPECT_EQ(CountCopies(), 3u);
    AppDriver app(folder_.Path());
    for (const char* answer : {"Later", "Discard", "Later"}) {
        WindowHand::WaitFor(kOffer);
        EXPECT_EQ(WindowHand::Count(kOffer), 1);
        const auto box = WindowHand::Number(kOffer);
        WindowHand::Click(kOffer, answer);
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return WindowHand::Number(kOffer) != box; }));
        app.Settle();
    }
    EXPECT_TRUE(AppDriver::WaitUntil([&] { return WindowHand::Count(kOffer) == 0; }));
    EXPECT_TRUE(app.Shows("New Simulation"));
    EXPECT_EQ(CountCopies(), 2u);
}

// The window is gone; the program waits for the answer.
TEST_F(RecoveryTest, WhatCouldNotBeSavedWhenItClosedIsOfferedAtOnce) {
    const std::string place = folder_.Path() + "/place";
    std::filesystem::create_directory(place);
    AppDriver app(folder_.Path(), {WriteDocument(place + "/Comets")});
    EXPECT_TRUE(app.Shows("Comets"));
    app.Edit(0);
    std::filesystem::remove_all(place);
    const auto saveAndClose = [&] {
        BMessage answer(FourCC("svtq"));
        answer.AddBool("CheckBox", false);
        static_cast<void>(static_cast<BLooper*>(app.Simulations().at(0))->PostMessage(&answer));
        WindowHand::WaitFor(kOffer);
        EXPECT_TRUE(app.Shows(""));
        EXPECT_FALSE(app.HasEnded());
    };
    saveAndClose();
    std::filesystem::create_directory(place);
    WindowHand::Click(kOffer, "Recover");
    EXPECT_TRUE(app.Shows("Comets"));
    std::filesystem::remove_all(place);
    saveAndClose();
    WindowHand::Click(kOffer, "Later");
    EXPECT_TRUE(app.Ends());
    EXPECT_EQ(CountCopies(), 1u);
}

}  // namespace
