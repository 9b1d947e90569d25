// What the application remembers: in its preference set, and from one run to the next.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "AppDefs.h"
#include "AppDriver.h"
#include "BFont.h"
#include "BLooper.h"
#include "BoxHand.h"
#include "DefaultResponses.h"
#include "Preferences.h"
#include "ProgramMessages.h"
#include "RecentDocuments.h"
#include "SimulationFile.h"
#include "TestFolder.h"

namespace {

constexpr const char* kQuestion = "Orvek (New Simulation): Message";

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
        std::string path = folder_.Path() + '/' + name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        EXPECT_FALSE(SimulationFile::Write(path, TestResources().NewSimulation()).Failed());
        return path;
    }
    static bool Shows(AppDriver* app, const std::string& titles) {
        return AppDriver::WaitUntil([&] { return app->Titles() == titles; });
    }
    static void Quit(AppDriver* app) {
        app->Post(B_QUIT_REQUESTED);
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return app->HasEnded(); }));
    }

    const TestFolder folder_;
};

TEST_F(SettingsTest, TheOpenPanelComesBackWhereItWas) {
    const std::string document = Document("documents/one");
    const BRect frame{40, 50, 739, 549};
    {
        AppDriver app(folder_.Path());
        EXPECT_TRUE(Shows(&app, "New Simulation"));
        app.Post(kOpen);
        EXPECT_TRUE(AppDriver::WaitUntil(BoxHand::IsPanelSeen));
        BoxHand::MovePanel(frame);
        BoxHand::CancelPanel();
        // A choice of the panel; files that come from elsewhere are not remembered.
        app.Choose({document}, nullptr);
        EXPECT_TRUE(Shows(&app, "New Simulation,one"));
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
    EXPECT_FALSE(items.HasName("Default responses"));

    AppDriver app(folder_.Path());
    app.Post(kOpen);
    EXPECT_TRUE(AppDriver::WaitUntil(BoxHand::IsPanelSeen));
    EXPECT_EQ(BoxHand::PanelFrame(), frame);
}

TEST_F(SettingsTest, AStandingAnswerHoldsUntilItIsTakenBack) {
    {
        AppDriver app(folder_.Path());
        EXPECT_TRUE(Shows(&app, "New Simulation"));
        app.Edit(0);
        app.Close(0);
        BoxHand::WaitFor(kQuestion);
        BoxHand::Tick(kQuestion);
        BoxHand::Press(kQuestion, "Don't Save");
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return app.HasEnded(); }));
    }
    const BMessage items = Saved();
    type_code type = 0;
    EXPECT_EQ(items.GetInfo("Default responses", &type), B_OK);
    EXPECT_EQ(type, B_MESSAGE_TYPE);
    BMessage pairs;
    int32 id = 0;
    int32 command = 0;
    EXPECT_EQ(items.FindMessage("Default responses", &pairs), B_OK);
    EXPECT_EQ(pairs.what, FourCC("sdmr"));
    EXPECT_EQ(pairs.FindInt32("Window ID", &id), B_OK);
    EXPECT_EQ(pairs.FindInt32("Default", &command), B_OK);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(static_cast<uint32>(command), FourCC("rlyq"));
    {
        // No question in the next run; nor is the answer lost in it.
        AppDriver app(folder_.Path());
        EXPECT_TRUE(Shows(&app, "New Simulation"));
        app.Edit(0);
        app.Close(0);
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return app.HasEnded(); }));
    }
    EXPECT_TRUE(Saved().HasName("Default responses"));
    {
        AppDriver app(folder_.Path());
        EXPECT_TRUE(Shows(&app, "New Simulation"));
        app.Post(kClearDefaultResponses);
        app.Settle();
        EXPECT_EQ(app->DefaultResponse(1), 0u);
        Quit(&app);
    }
    EXPECT_FALSE(Saved().HasName("Default responses"));
}

TEST_F(SettingsTest, RecentDocumentsAreOffered) {
    const std::string one = Document("one");
    const std::string two = Document("two");
    const std::string otherTwo = Document("elsewhere/two");
    {
        AppDriver app(folder_.Path(), {one});
        EXPECT_TRUE(Shows(&app, "one"));
        app.Choose({two}, nullptr);
        EXPECT_TRUE(AppDriver::WaitUntil([] {
            return BoxHand::Submenu("one", "Open Recent") ==
                   std::vector<std::string>{"two", "one", "Clear List"};
        }));
        app.Choose({otherTwo}, nullptr);
        EXPECT_TRUE(AppDriver::WaitUntil([&] {
            return BoxHand::Submenu("one", "Open Recent") ==
                   std::vector<std::string>{otherTwo, two, "one", "Clear List"};
        }));
        Quit(&app);
    }
    std::filesystem::remove(two);
    AppDriver app(folder_.Path());
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    EXPECT_EQ(BoxHand::Submenu("New Simulation", "Open Recent"),
              (std::vector<std::string>{"two", "one", "Clear List"}));
    BoxHand::ChooseItem("New Simulation", "Open Recent", "one");
    EXPECT_TRUE(Shows(&app, "New Simulation,one"));
    // It has gone since.
    std::filesystem::remove(otherTwo);
    BoxHand::ChooseItem("New Simulation", "Open Recent", "two");
    EXPECT_TRUE(AppDriver::WaitUntil([] {
        return BoxHand::Submenu("New Simulation", "Open Recent") ==
               std::vector<std::string>{"one", "Clear List"};
    }));
    BoxHand::WaitFor("Open Recent");
    BoxHand::PressEnter("Open Recent");
    BoxHand::ChooseItem("New Simulation", "Open Recent", "Clear List");
    EXPECT_TRUE(AppDriver::WaitUntil([] {
        return BoxHand::Submenu("New Simulation", "Open Recent") ==
               std::vector<std::string>{"[Clear List]"};
    }));
}

TEST_F(SettingsTest, UnusableSettingsAreReplaced) {
    const std::string folder = folder_.Path() + "/settings/_LP_x-vnd.tallowby-Orvek";
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(Document("no preferences"), folder + "/OrvekAppPrefs");
    AppDriver app(folder_.Path());
    EXPECT_TRUE(Shows(&app, "New Simulation"));
    Quit(&app);
    EXPECT_TRUE(Saved().HasName("Open in"));
}

TEST(RecentDocuments, TenAreKept) {
    RecentDocuments recent;
    for (int i = 0; i < 12; i++)
        recent.Note("/document " + std::to_string(i));
    EXPECT_EQ(recent.Paths().size(), RecentDocuments::kMaxCount);
    EXPECT_EQ(recent.Paths().front(), "/document 11");
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
    responses.Clear();
    EXPECT_EQ(responses.Command(1), 0u);
}

// A window whose port is full gets its message when there is room again.
TEST(AttemptMessage, WaitsForRoom) {
    class SmallLooper : public BLooper {
    public:
        SmallLooper() : BLooper("small", B_NORMAL_PRIORITY, 1) {}
        void MessageReceived(BMessage* message) override {
            received += message->what == FourCC("last") ? 1 : 0;
        }
        std::atomic<int> received{0};
    };
    auto* const looper = new SmallLooper;
    EXPECT_EQ(looper->PostMessage(FourCC("frst")), B_OK);
    EXPECT_EQ(looper->PostMessage(FourCC("more")), B_WOULD_BLOCK);
    std::thread sender([looper] {
        const BMessage last(FourCC("last"));
        SimApp::AttemptMessage(&last, looper);
    });
    snooze(150'000);  // it has tried in vain by now
    looper->Run();
    sender.join();
    EXPECT_TRUE(AppDriver::WaitUntil([looper] { return looper->received == 1; }));
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
