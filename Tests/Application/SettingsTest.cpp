// What the application remembers: in its preference set, and from one run to the next.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <future>

#include "Application/DefaultResponses.h"
#include "Application/Prefs/Preferences.h"
#include "Interface Widgets/PanelFolder.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/RecentDocuments.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Application/WindowHand.h"
#include "Tests/Platform/TestFolder.h"

namespace {

class SettingsTest : public testing::Test {
protected:
    SettingsTest() { setenv("XDG_CONFIG_HOME", (folder_.Path() + "/settings").c_str(), 1); }

    // All items of the application's set, as they are on disk.
    static BMessage Saved() {
        PREFHandle* handle = nullptr;
        PreferenceSet* set = nullptr;
        BMessage items;
        EXPECT_EQ(PREFInit("x-vnd.tallowby-Orvek", &handle), B_OK);
        EXPECT_EQ(PREFLoadSet(handle, "OrvekAppPrefs", true, &set), B_OK);
        EXPECT_EQ(PREFGetMessage(set, &items), B_OK);
        PREFDisposeSet(set);
        PREFShutdown(handle);
        return items;
    }
    std::string Document(const std::string& name) const {
        const std::string path = folder_.Path() + '/' + name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        return WriteDocument(path);
    }
    static void Quit(AppDriver* app) {
        app->Post(B_QUIT_REQUESTED);
        EXPECT_TRUE(app->Ends());
    }

    const TestFolder folder_;
};

TEST_F(SettingsTest, TheOpenPanelComesBackWhereItWas) {
    const BRect frame{40, 50, 739, 549};
    {
        AppDriver app(folder_.Path());
        EXPECT_TRUE(app.Shows("New Simulation"));
        app.Post(kOpen);
        EXPECT_TRUE(AppDriver::WaitUntil(WindowHand::IsPanelSeen));
        WindowHand::MovePanel(frame);
        WindowHand::CancelPanel();
        // A choice of the panel; files that come from elsewhere are not remembered.
        app.Choose({Document("documents/one")}, nullptr);
        EXPECT_TRUE(app.Shows("New Simulation,one"));
        Quit(&app);
    }
    const BMessage items = Saved();
    const void* data = nullptr;
    std::size_t size = 0;
    ASSERT_EQ(items.FindData("Open in", B_ASCII_TYPE, 0, &data, &size), B_OK);
    EXPECT_EQ(std::string(static_cast<const char*>(data), size),
              folder_.Path() + "/documents" + '\0');
    BPoint at;
    float width = 0;
    float height = 0;
    EXPECT_EQ(items.FindPoint("Open at", &at), B_OK);
    EXPECT_EQ(items.FindFloat("Open W", &width), B_OK);
    EXPECT_EQ(items.FindFloat("Open H", &height), B_OK);
    EXPECT_EQ(at, (BPoint{40, 50}));
    EXPECT_FLOAT_EQ(width, frame.Width() / BFont().Size());
    EXPECT_FLOAT_EQ(height, frame.Height() / BFont().Size());

    AppDriver app(folder_.Path());
    app.Post(kOpen);
    EXPECT_TRUE(AppDriver::WaitUntil(WindowHand::IsPanelSeen));
    EXPECT_EQ(WindowHand::PanelFrame(), frame);
}

TEST_F(SettingsTest, AStandingAnswerHoldsUntilItIsTakenBack) {
    const char* const question = "Orvek (New Simulation): Message";
    {
        AppDriver app(folder_.Path());
        EXPECT_TRUE(app.Shows("New Simulation"));
        app.Edit(0);
        app.Close(0);
        WindowHand::WaitFor(question);
        WindowHand::Click(question, "Never ask me again (always use what I select now).");
        WindowHand::Click(question, "Don't Save");
        EXPECT_TRUE(app.Ends());
    }
    BMessage pairs;
    int32 id = 0;
    int32 command = 0;
    EXPECT_EQ(Saved().FindMessage("Default responses", &pairs), B_OK);
    EXPECT_EQ(pairs.what, FourCC("sdmr"));
    EXPECT_EQ(pairs.FindInt32("Window ID", &id), B_OK);
    EXPECT_EQ(pairs.FindInt32("Default", &command), B_OK);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(static_cast<uint32>(command), FourCC("rlyq"));
    {
        // No question in the next run; nor is the answer lost in it.
        AppDriver app(folder_.Path());
        EXPECT_TRUE(app.Shows("New Simulation"));
        app.Edit(0);
        app.Close(0);
        EXPECT_TRUE(app.Ends());
    }
    EXPECT_TRUE(Saved().HasName("Default responses"));
    {
        AppDriver app(folder_.Path());
        app.Post(kClearDefaultResponses);
        Quit(&app);
    }
    EXPECT_FALSE(Saved().HasName("Default responses"));
}

TEST_F(SettingsTest, RecentDocumentsAreOffered) {
    using Labels = std::vector<std::string>;
    const auto offers = [](const std::string& window, const Labels& labels) {
        const std::string menu = "Orvek/Open Recent/";
        return AppDriver::WaitUntil([&] {
            Labels found;
            for (const std::string& item : WindowHand::Items(window))
                if (item.starts_with(menu)) found.push_back(item.substr(menu.size()));
            return found == labels;
        });
    };
    const std::string one = Document("one");
    const std::string two = Document("two");
    const std::string otherTwo = Document("elsewhere/two");
    {
        AppDriver app(folder_.Path(), {one});
        EXPECT_TRUE(app.Shows("one"));
        app.Choose({two}, nullptr);
        EXPECT_TRUE(offers("one", {"two", "one", "Clear List"}));
        app.Choose({otherTwo}, nullptr);
        EXPECT_TRUE(offers("one", {otherTwo, two, "one", "Clear List"}));
        Quit(&app);
    }
    std::filesystem::remove(two);
    AppDriver app(folder_.Path());
    EXPECT_TRUE(app.Shows("New Simulation"));
    EXPECT_TRUE(offers("New Simulation", {"two", "one", "Clear List"}));
    app.Edit(0);
    WindowHand::Choose("New Simulation", "Orvek/Open Recent/one");
    EXPECT_TRUE(app.Shows("New Simulation,one"));
    // It has gone since.
    std::filesystem::remove(otherTwo);
    WindowHand::Choose("New Simulation", "Orvek/Open Recent/two");
    EXPECT_TRUE(offers("New Simulation", {"one", "Clear List"}));
    WindowHand::WaitFor("Open Recent");
    WindowHand::Press("Open Recent", WindowHand::Key::kEnter);
    WindowHand::Choose("New Simulation", "Orvek/Open Recent/Clear List");
    EXPECT_TRUE(offers("New Simulation", {"Clear List"}));
    EXPECT_FALSE(WindowHand::CanChoose("New Simulation", "Orvek/Open Recent/Clear List"));
}

TEST_F(SettingsTest, UnusableSettingsAreReplaced) {
    const std::string folder = folder_.Path() + "/settings/_LP_x-vnd.tallowby-Orvek";
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(Document("no preferences"), folder + "/OrvekAppPrefs");
    AppDriver app(folder_.Path());
    EXPECT_TRUE(app.Shows("New Simulation"));
    app.Choose({Document("one")}, app.Simulations().front());
    EXPECT_TRUE(app.Shows("one"));
    Quit(&app);
    EXPECT_TRUE(Saved().HasName("Open in"));
}

// This test's own program lies in a build tree.
TEST_F(SettingsTest, PanelsBeginWhereUsersKeepDocuments) {
    const std::string documents = folder_.Path("My Papers");
    std::filesystem::create_directory(documents);
    const auto begins = [](AppDriver* app) {
        app->Post(kOpen);
        EXPECT_TRUE(AppDriver::WaitUntil(WindowHand::IsPanelSeen));
        std::string folder = WindowHand::PanelFolder();
        WindowHand::CancelPanel();
        return folder;
    };
    const char* const home = std::getenv("HOME");
    const std::string formerHome = home == nullptr ? "" : home;
    setenv("HOME", folder_.Path().c_str(), 1);
    {
        AppDriver app(folder_.Path());
        EXPECT_EQ(begins(&app), folder_.Path()) << "nothing better is known";
    }
    folder_.Write("settings/user-dirs.dirs",
                  "# XDG_DOCUMENTS_DIR=\"$HOME/Not\"\nXDG_MUSIC_DIR=\"$HOME/Music\"\n"
                  "XDG_DOCUMENTS_DIR=\"$HOME/My\\ Papers\"\n");
    {
        AppDriver app(folder_.Path());
        EXPECT_TRUE(app.Shows("New Simulation"));
        EXPECT_EQ(begins(&app), documents);
        // A save panel does so, too.
        WindowHand::Choose("New Simulation", "File/Save As…");
        EXPECT_TRUE(AppDriver::WaitUntil(WindowHand::IsPanelSeen));
        EXPECT_EQ(WindowHand::PanelFolder(), documents);
        WindowHand::CancelPanel();
        // A tree of somebody else's.
        folder_.Write("build/CMakeCache.txt", "");
        app.Choose({Document("build/bin/one")}, nullptr);
        EXPECT_TRUE(app.Shows("New Simulation,one"));
        EXPECT_EQ(begins(&app), documents);
        Quit(&app);
    }
    EXPECT_FALSE(Saved().HasName("Open in"));
    for (const char* const folder : {"/", "/usr/share/doc", "/etc"})
        EXPECT_TRUE(IsProgramsFolder(folder)) << folder;
    for (const std::string& folder : {folder_.Path(), documents, std::string("/run/media/disk")})
        EXPECT_FALSE(IsProgramsFolder(folder)) << folder;
    setenv("HOME", formerHome.c_str(), 1);
}

TEST(RecentDocuments, TenAreKept) {
    RecentDocuments recent;
    for (int i = 0; i < 12; i++)
        recent.Note("/document " + std::to_string(i));
    recent.Note("/document 5");
    EXPECT_EQ(recent.Paths().size(), RecentDocuments::kMaxCount);
    EXPECT_EQ(recent.Paths().front(), "/document 5");
    EXPECT_EQ(recent.Paths().back(), "/document 2");
}

TEST(DefaultResponses, PairsEndWhereOneHalfIsMissing) {
    DefaultResponses responses;
    BMessage pairs;
    for (const int32 id : {1, 2, 1, 3})
        pairs.AddInt32("Window ID", id);
    for (const int32 command : {10, 20, 30})
        pairs.AddInt32("Default", command);
    responses.Merge(pairs);
    EXPECT_EQ(responses.Command(1), 30u);
    EXPECT_EQ(responses.Command(2), 20u);
    EXPECT_EQ(responses.Command(3), 0u);
}

// A window whose port is full gets its message when there is room again.
TEST(AttemptMessage, WaitsForRoom) {
    auto* const looper = new BLooper("small", B_NORMAL_PRIORITY, 1);
    EXPECT_EQ(looper->PostMessage(FourCC("frst")), B_OK);
    EXPECT_EQ(looper->PostMessage(FourCC("more")), B_WOULD_BLOCK);
    const auto sent = std::async(std::launch::async, [looper] {
        const BMessage last(FourCC("last"));
        SimApp::AttemptMessage(&last, looper);
    });
    EXPECT_EQ(sent.wait_for(std::chrono::milliseconds(150)), std::future_status::timeout);
    looper->Run();
    sent.wait();
    if (looper->Lock()) looper->Quit();
}

TEST(ProgramIcon, FillsOnlyBitmapsOfItsKind) {
    TestFolder folder;
    AppDriver app(folder.Path());
    BBitmap mini({0, 0, 15, 15}, B_CMAP8);
    BBitmap large({0, 0, 31, 31}, B_CMAP8);
    BBitmap deep({0, 0, 15, 15}, B_RGB32);
    for (BBitmap* const bitmap : {&mini, &large, &deep})
        app->GetIcon(bitmap);
    const rgb_color transparent{0, 0, 0, 0};
    EXPECT_EQ(mini.ColorAt(0, 0), transparent);
    EXPECT_NE(mini.ColorAt(8, 8), transparent);
    EXPECT_EQ(large.ColorAt(8, 8), large.ColorAt(0, 0));
    EXPECT_EQ(deep.ColorAt(8, 8), transparent);
}

}  // namespace
