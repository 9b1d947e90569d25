// The application as it starts, opens documents and ends.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/RecentDocuments.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Storage/BNode.h"
#include "Platform/Storage/BNodeInfo.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Simulation.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Application/WindowHand.h"
#include "Tests/Platform/TestFolder.h"

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

std::string NameOf(const std::string& path) {
    return std::filesystem::path(path).filename();
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
        // One of the windows tells, too.
        EXPECT_TRUE(AppDriver::WaitUntil([&] {
            return (app.Message(0) + app.Message(1)).find("damaged cannot") != std::string::npos;
        }));
    }
    const std::string said = testing::internal::GetCapturedStderr();
    for (const char* name : {"/other tag cannot", "/damaged cannot", "/missing cannot"})
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

// Never nothing, and never the end of the program.
TEST_F(LaunchTest, AWindowTellsWhatCannotBeOpened) {
    const std::string bad = Path("bad");
    PutUnchecked(bad, BadRecord());
    const std::string text = Path("text");
    std::ofstream(text) << "no document";
    const std::string good = Document("good");
    testing::internal::CaptureStderr();
    const auto tells = [](AppDriver* app, std::size_t window, const std::string& path) {
        return AppDriver::WaitUntil([=] {
            return window < app->Simulations().size() &&
                   app->Message(window).find(NameOf(path) + " cannot be opened: ") !=
                       std::string::npos;
        });
    };
    for (const std::string& path : {bad, text, Path("missing")}) {
        AppDriver app(folder_.Path(), {path});
        EXPECT_TRUE(app.Shows("New Simulation")) << path;
        EXPECT_TRUE(tells(&app, 0, path));
    }
    AppDriver app(folder_.Path());
    EXPECT_TRUE(app.Shows("New Simulation"));
    // The window that asked; it is untouched all the same.
    Simulation* const first = app.Simulations().front();
    app.Choose({text}, first);
    EXPECT_TRUE(tells(&app, 0, text));
    app.Choose({bad}, first);
    EXPECT_TRUE(tells(&app, 0, bad));
    app.Choose({good}, first);
    EXPECT_TRUE(app.Shows("good"));
    for (const std::string& path : {bad, text}) {
        app.Choose({path}, first);
        EXPECT_TRUE(tells(&app, 0, path));
        EXPECT_TRUE(app.Shows("good"));
    }
    // Nobody asked, as when another program hands it over: the one in front, and no other opens.
    for (const std::string& path : {bad, text}) {
        app.Choose({path}, nullptr);
        EXPECT_TRUE(tells(&app, 0, path));
    }
    // While another one is read, too, in a window that is never shown.
    app.Choose({bad}, nullptr);
    app.Choose({text}, nullptr);
    app.Settle();
    EXPECT_TRUE(AppDriver::WaitUntil([&] { return app.Simulations().size() == 1; }));
    EXPECT_TRUE(app.Shows("good"));
    static_cast<void>(testing::internal::GetCapturedStderr());
}

TEST_F(LaunchTest, ARecentDocumentReplacesAnUntouchedWindowToo) {
    const std::string one = Document("one");
    AppDriver app(folder_.Path());
    EXPECT_TRUE(app.Shows("New Simulation"));
    RecentDocuments::Shared().Set({one});
    const char* const item = "Orvek/Open Recent/one";
    EXPECT_TRUE(
        AppDriver::WaitUntil([&] { return WindowHand::CanChoose("New Simulation", item); }));
    WindowHand::Choose("New Simulation", item);
    EXPECT_TRUE(app.Shows("one"));
    WindowHand::Choose("one", item);
    EXPECT_TRUE(app.Shows("one,one (window 2 of this document)"));
}

// More than the application's port holds.
TEST_F(LaunchTest, HundredsOfDocumentsOpenAtOnce) {
#ifdef ORVEK_SANITIZED
    constexpr std::size_t kCount = 120;
#else
    constexpr std::size_t kCount = 200;
#endif
    constexpr int kPatience = 8;  // half minutes
    // With a display that takes little memory.
    BMessage record = TestResources().NewSimulation();
    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    display.RemoveName("Disp frame");
    display.AddRect("Disp frame", {300.0f, 300.0f, 399.0f, 399.0f});
    record.RemoveName("Displays");
    record.AddMessage("Displays", &display);
    ASSERT_FALSE(SimulationFile::Write(Path("one of many"), record).Failed());
    const std::vector<std::string> files(kCount, Path("one of many"));
    AppDriver app(folder_.Path(), files);
    const auto shown = [&] {
        std::size_t count = 0;
        for (const Simulation* const simulation : app.Simulations())
            if (!simulation->IsHidden()) count++;
        return count;
    };
    const auto waitFor = [](const auto& condition) {
        bool isTrue = false;
        for (int i = 0; i < kPatience && !isTrue; i++)
            isTrue = AppDriver::WaitUntil(condition);
        return isTrue;
    };
    EXPECT_TRUE(waitFor([&] { return shown() == kCount; })) << shown();
    // The program is all there.
    app.Post(B_QUIT_REQUESTED);
    EXPECT_TRUE(waitFor([&] { return app.HasEnded(); }));
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

TEST_F(LaunchTest, QuittingEndsWithWindowsThatCameMeanwhile) {
    AppDriver app(folder_.Path());
    EXPECT_TRUE(app.Shows("New Simulation"));
    app.Edit(0);
    app.Post(kOpen);
    app.Post(B_QUIT_REQUESTED);
    WindowHand::WaitFor(kQuestion);
    app.Post(kNewSimulation);
    EXPECT_TRUE(app.Shows("New Simulation,New Simulation"));
    app.Edit(1);
    WindowHand::Click(kQuestion, "Don't Save");
    EXPECT_TRUE(app.Shows("New Simulation"));
    EXPECT_TRUE(AppDriver::WaitUntil([] { return WindowHand::Count(kQuestion) == 1; }))
        << "that one has changes, too";
    WindowHand::Click(kQuestion, "Cancel");
    EXPECT_TRUE(AppDriver::WaitUntil([] { return WindowHand::Count(kQuestion) == 0; }));
    app.Settle();
    // So it is not quitting: the panel keeps the program alive when the last window goes.
    app.Close(0);
    WindowHand::WaitFor(kQuestion);
    WindowHand::Click(kQuestion, "Don't Save");
    EXPECT_TRUE(app.Shows(""));
    app.Settle();
    EXPECT_FALSE(app.HasEnded());
    WindowHand::CancelPanel();
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

TEST_F(RecoveryTest, ACopyThatCannotBeUsedEndsNothing) {
    const RecoveryFolder copies(folder_.Path() + "/state/orvek/recovery");
    std::string bad;
    std::string good;
    EXPECT_FALSE(copies.Keep(TestResources().NewSimulation(), "bad", "", &bad).Failed());
    BMessage badCopy = BadRecord();
    badCopy.AddString("Recovered name", "bad");
    PutUnchecked(bad, badCopy);
    testing::internal::CaptureStderr();
    {
        AppDriver app(folder_.Path());
        WindowHand::WaitFor(kOffer);
        WindowHand::Click(kOffer, "Recover");
        EXPECT_TRUE(AppDriver::WaitUntil([&] {
            return app.Simulations().size() == 1 &&
                   app.Message(0).find(NameOf(bad) + " cannot be opened: ") != std::string::npos;
        }));
        EXPECT_TRUE(app.Shows("New Simulation"));
        EXPECT_EQ(CountCopies(), 1u) << "it may be of use to somebody";
    }
    static_cast<void>(testing::internal::GetCapturedStderr());
    copies.Discard(bad);
    EXPECT_FALSE(copies.Keep(TestResources().NewSimulation(), "good", "", &good).Failed());
    AppDriver app(folder_.Path());
    WindowHand::WaitFor(kOffer);
    WindowHand::Click(kOffer, "Recover");
    EXPECT_TRUE(app.Shows("good")) << "the untouched one goes";
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

// Though their document's folder is gone.
TEST_F(RecoveryTest, CopiesOfTwoWindowsOfOneDocumentAreTwoWindowsOfIt) {
    const RecoveryFolder copies(folder_.Path() + "/state/orvek/recovery");
    for (std::string path : {"", ""})
        EXPECT_FALSE(
            copies.Keep(TestResources().NewSimulation(), "Comets", "/gone/Comets", &path).Failed());
    AppDriver app(folder_.Path());
    for (const char* const titles : {"Comets", "Comets,Comets (window 2 of this document)"}) {
        WindowHand::WaitFor(kOffer);
        WindowHand::Click(kOffer, "Recover");
        EXPECT_TRUE(app.Shows(titles)) << app.Titles();
    }
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
