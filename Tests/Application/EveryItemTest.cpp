// Every item of every menu bar does something that is seen, wherever its message has to go.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <set>
#include <utility>

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BClipboard.h"
#include "Platform/Kernel/OS.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Simulation.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Application/WindowHand.h"
#include "Tests/Platform/TestFolder.h"

namespace {

using Condition = std::function<bool()>;

// What a menu holds, whatever it says for the moment: "Undo New Body" is "Undo".
std::string Kind(std::string item) {
    for (const char* const named : {"Edit/Undo", "Edit/Redo"})
        if (item.starts_with(named)) item = named;
    if (item == "Simulation/Pause") item = "Simulation/Go";
    // Each example has one, for each of its lines.
    if (item.starts_with("Orvek/Open Example/")) item = "Orvek/Open Example/";
    // Each body has one.
    for (const char* const bodies :
         {"View/Follow/", "View/View From/Along the Orbit Of/", "View/Measure/To/"})
        if (item.starts_with(bodies)) item = bodies;
    // And each epoch.
    if (item.starts_with("View/Compare With/") && item.find(", ") != std::string::npos)
        item = "View/Compare With/";
    return item;
}

// The template's, but for an order that knows the way back.
std::string WriteReversible(const std::string& path) {
    BMessage record = TestResources().NewSimulation();
    BMessage epoch;
    EXPECT_EQ(record.FindMessage("Epochs", &epoch), B_OK);
    epoch.RemoveName("Order");
    epoch.AddInt32("Order", 16);
    record.RemoveName("Epochs");
    record.AddMessage("Epochs", &epoch);
    EXPECT_FALSE(SimulationFile::Write(path, record).Failed());
    return path;
}

class EveryItemTest : public testing::Test {
protected:
    void SetUp() override {
        app_.emplace(folder_.Path(), std::vector{path_});
        WindowHand::WaitFor(kDisplay);
        WindowHand::WaitFor(kSystem);
    }

    // Chooses the item when it can be chosen, and waits for what it should do. Nothing after a
    // failure: every step would wait in vain.
    void Does(const std::string& window, const std::string& item, const Condition& effect) {
        if (HasFailure()) return;
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return WindowHand::CanChoose(window, item); }))
            << window << ": " << item << " cannot be chosen";
        EXPECT_FALSE(effect()) << item << " would show nothing";
        WindowHand::Choose(window, item);
        EXPECT_TRUE(AppDriver::WaitUntil(effect)) << window << ": " << item << " does nothing";
        chosen_.insert(Kind(item));
    }
    // The same for one that opens a window, which is closed again.
    void Opens(const std::string& window, const std::string& item, const std::string& opened) {
        Does(window, item, [&] { return WindowHand::Count(opened) == 1; });
        WindowHand::Close(opened);
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return WindowHand::Count(opened) == 0; })) << opened;
    }
    void OpensPanel(const std::string& window, const std::string& item) {
        Does(window, item, WindowHand::IsPanelSeen);
        CancelPanel();
    }
    static void CancelPanel() {
        WindowHand::CancelPanel();
        EXPECT_TRUE(AppDriver::WaitUntil([] { return !WindowHand::IsPanelSeen(); }));
    }
    // The history's next step back, or forth.
    static Condition History(const std::string& item) {
        return [item] { return std::ranges::count(WindowHand::Items(kSystem), item) == 1; };
    }
    // The document is another file than before.
    Condition IsSaved() const {
        struct stat before {};
        EXPECT_EQ(stat(path_.c_str(), &before), 0);
        return [this, before] {
            struct stat now {};
            return stat(path_.c_str(), &now) == 0 &&
                   (now.st_ino != before.st_ino || now.st_mtim.tv_nsec != before.st_mtim.tv_nsec);
        };
    }
    // Returns when the window shows it.
    void Select(int64 id) {
        BMessage edit(kEditBody);
        edit.AddInt64(kBodyIDField, id);
        BMessage reply;
        const BMessenger simulation(static_cast<BHandler*>(app_->Simulations().front()));
        for (const BMessage& message : {edit, BMessage(kEditBody)})
            EXPECT_EQ(simulation.SendMessage(&message, &reply), B_OK);
    }
    void Cancels(const std::string& box) {
        WindowHand::WaitFor(box);
        WindowHand::Click(box, "Cancel");
        EXPECT_TRUE(AppDriver::WaitUntil([&] { return WindowHand::Count(box) == 0; }));
    }

    // More of them than open by themselves.
    void WaitingDisplays();
    void AppMenu(const std::string& window);
    void SimulationMenu(const std::string& window);
    // Nothing is left out.
    void ExpectAllChosen(const std::string& window) {
        for (const std::string& item : WindowHand::Items(window))
            EXPECT_TRUE(chosen_.contains(Kind(item))) << window << ": " << item;
        chosen_.clear();
    }

    static constexpr int kShortTrail = 50;
    static constexpr bigtime_t kRunTime = 300'000;  // us, in which bodies move
    static constexpr const char* kExample =
        "Orvek/Open Example/Three equal bodies that follow one another along a figure eight.";
    static constexpr const char* kSystem = "system";
    static constexpr const char* kDisplay = "Projection of system";
    static constexpr const char* kQuestion = "Orvek (system): Message";

    const TestFolder folder_;
    const std::string path_ = WriteReversible(folder_.Path() + "/system");
    std::optional<AppDriver> app_;
    std::set<std::string> chosen_;
};

void EveryItemTest::AppMenu(const std::string& window) {
    Does(window, "Orvek/New Simulation",
         [this] { return app_->Titles() == "system,New Simulation"; });
    app_->Close(1);
    EXPECT_TRUE(app_->Shows("system"));
    OpensPanel(window, "Orvek/Open…");
    Does(window, "Orvek/Open Recent/system",
         [this] { return app_->Titles() == "system,system (window 2 of this document)"; });
    app_->Close(1);
    EXPECT_TRUE(app_->Shows("system"));
    Does(window, kExample, [this] { return app_->Titles() == "system,figure-eight.orvek"; });
    app_->Close(1);
    EXPECT_TRUE(app_->Shows("system"));
    Opens(window, "Orvek/Examples…", "Examples");
    Opens(window, "Orvek/About Orvek…", "About Orvek");
    Opens(window, "Help/Guide", "Guide to Orvek");
    BMessage answer(kSetDefaultResponse);
    answer.AddInt32("Window ID", 1);
    answer.AddInt32("Default", static_cast<int32>(FourCC("rlyq")));
    app_->Post(answer);
    app_->Settle();
    Does(window, "Orvek/Re-enable Warning Boxes",
         [this] { return (*app_)->DefaultResponse(1) == 0; });
}

void EveryItemTest::SimulationMenu(const std::string& window) {
    const auto shows = [&](const char* item) {
        return [=] { return WindowHand::CanChoose(window, item); };
    };
    // Nothing has run: the simulation says so.
    if (window == kSystem) {
        const std::string picture = WindowHand::Picture(kSystem);
        Does(window, "Simulation/Make Run Again",
             [&] { return WindowHand::Picture(kSystem) != picture; });
    }
    Does(window, "Simulation/Go", shows("Simulation/Pause"));
    snooze(kRunTime);
    Does(window, "Simulation/Pause", shows("Simulation/Go"));
    const auto opens = [&](const char* item) { Opens(window, item, "How Exact Is This?"); };
    opens("Simulation/How Exact Is This…");
    opens("Simulation/How Chaotic");
    opens("Simulation/Re-run More Exactly");
    WindowHand::Press(kDisplay, WindowHand::Key::kHome);
    Does(window, "Simulation/Back to Now",
         [=] { return !WindowHand::CanChoose(window, "Simulation/Branch Here"); });
    WindowHand::Press(kDisplay, WindowHand::Key::kHome);
    Does(window, "Simulation/Branch Here", History("Edit/Undo Branch"));
    Does(window, "Simulation/Run Backwards", shows("Simulation/Pause"));
    Does(window, "Simulation/Pause", shows("Simulation/Go"));
    Opens(window, "Simulation/Run To…", "Run To");
    Opens(window, "Simulation/Animation…", "Animation options for system");
    Opens(window, "Simulation/Epochs…", "Epochs for system");
}

void EveryItemTest::WaitingDisplays() {
    constexpr int kMany = 33;
    const std::string path = folder_.Path() + "/many";
    BMessage record = TestResources().NewSimulation();
    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    for (int i = 1; i < kMany; i++) {
        record.AddMessage("Displays", &display);
        record.AddInt32("Disp type", 1);
    }
    ASSERT_FALSE(SimulationFile::Write(path, record).Failed());
    app_->Choose({path}, nullptr);
    Does("many", "New Display/Open More of the Document",
         [] { return WindowHand::Count("Projection of many") == kMany; });
    app_->Close(1);
    EXPECT_TRUE(app_->Shows("system"));
}

TEST_F(EveryItemTest, OfASimulation) {
    AppMenu(kSystem);
    Does(kSystem, "Bodies/New Body", History("Edit/Undo New Body"));
    Does(kSystem, "Edit/Undo New Body", History("Edit/Redo New Body"));
    Does(kSystem, "Edit/Redo New Body", History("Edit/Undo New Body"));
    Does(kSystem, "Bodies/Delete Body", History("Edit/Undo Delete Body"));
    Does(kSystem, "Bodies/Group…", [] { return WindowHand::Count("Group Bodies") == 1; });
    WindowHand::Click("Group Bodies", "Group");
    EXPECT_TRUE(AppDriver::WaitUntil(History("Edit/Undo Group")));
    // The group has one of the first numbers.
    for (int64 id = 0; id < 8 && !WindowHand::CanChoose(kSystem, "Bodies/Dissolve Group"); id++)
        Select(id);
    Does(kSystem, "Bodies/Dissolve Group", History("Edit/Undo Dissolve Group"));
    Opens(kSystem, "Bodies/Trail & Disc…", "Display options for system");
    BClipboard::SetText({});
    Does(kSystem, "Edit/Copy as Text",
         [] { return BClipboard::Text().find("body \"Arrakis\"") != std::string::npos; });
    // It must not fall into its star: going back in time ends there.
    BClipboard::SetText("body \"Pasted\"\nat 1 2 3 AU\nmoving 10 0 0 km/s");
    Does(kSystem, "Edit/Paste Bodies", History("Edit/Undo Paste Bodies"));
    OpensPanel(kSystem, "File/Import Bodies…");
    OpensPanel(kSystem, "File/Export…");
    OpensPanel(kSystem, "File/Export Run…");
    SimulationMenu(kSystem);
    Does(kSystem, "New Display/Projection", [] { return WindowHand::Count(kDisplay) == 2; });
    Opens(kSystem, "New Display/Space", "Space of system");
    Opens(kSystem, "New Display/Chart", "Chart of system");
    WaitingDisplays();
    const char* const history = "File/Save History";
    Does(kSystem, history, [=] { return WindowHand::IsMarked(kSystem, history); });
    OpensPanel(kSystem, "File/Save As…");
    OpensPanel(kSystem, "File/Save Current Epoch");
    Does(kSystem, "File/Close", [] { return WindowHand::Count(kQuestion) == 1; });
    Cancels(kQuestion);
    Does(kSystem, "File/Close then Open…", WindowHand::IsPanelSeen);
    Cancels(kQuestion);
    CancelPanel();
    Does(kSystem, "Orvek/Open Recent/Clear List",
         [] { return !WindowHand::CanChoose(kSystem, "Orvek/Open Recent/system"); });
    Does(kSystem, "File/Save", IsSaved());
    chosen_.insert("Orvek/Quit Orvek");
    ExpectAllChosen(kSystem);
    Does(kSystem, "Orvek/Quit Orvek", [this] { return app_->HasEnded(); });
}

TEST_F(EveryItemTest, OfADisplay) {
    AppMenu(kDisplay);
    SimulationMenu(kDisplay);
    Opens(kDisplay, "Display/Scale…", "Choose Display Scale");
    Opens(kDisplay, "Display/Axis…", "Choose Suppressed Axis");
    // A run leaves trails.
    int painted = WindowHand::CountPainted(kDisplay);
    WindowHand::Choose(kDisplay, "Simulation/Go");
    EXPECT_TRUE(AppDriver::WaitUntil(
        [&] { return WindowHand::CountPainted(kDisplay) > painted + kShortTrail; }));
    Does(kDisplay, "Simulation/Pause",
         [] { return WindowHand::CanChoose(kDisplay, "Simulation/Go"); });
    painted = WindowHand::CountPainted(kDisplay);
    Does(kDisplay, "Display/Erase Window",
         [&] { return WindowHand::CountPainted(kDisplay) < painted - kShortTrail / 2; });
    for (const char* const item :
         {"View/Names", "View/Scale Bar", "View/Time", "View/Mark Small Bodies"}) {
        const bool was = WindowHand::IsMarked(kDisplay, item);
        Does(kDisplay, item, [&] { return WindowHand::IsMarked(kDisplay, item) != was; });
    }
    for (const char* const item : {"View/Follow/Arrakis", "View/Follow/Nothing"})
        Does(kDisplay, item, [=] { return WindowHand::IsMarked(kDisplay, item); });
    for (const char* const item :
         {"View/Frame/Rotating With/BoskVeld", "View/Frame/Rotating With/Arrakis",
          "View/Frame/Center of Mass", "View/Frame/Fixed", "View/Trail Length/Half an Orbit",
          "View/Trail Length/1 Orbit", "View/Trail Length/2 Orbits", "View/Trail Length/5 Orbits",
          "View/Trail Length/10 Orbits", "View/Trail Length/1 Day", "View/Trail Length/1 Month",
          "View/Trail Length/1 Year", "View/Trail Length/10 Years", "View/Trail Length/100 Years"})
        Does(kDisplay, item, [=] { return WindowHand::IsMarked(kDisplay, item); });
    Opens(kDisplay, "View/Trail Length/Other…", "Trail Length");
    const char* const fading = "View/Trail Length/Fading";
    Does(kDisplay, fading, [=] { return !WindowHand::IsMarked(kDisplay, fading); });
    const char* const all = "View/Trail Length/All";
    Does(kDisplay, all, [=] { return WindowHand::IsMarked(kDisplay, all); });
    // What is followed stands still, and the frame no longer turns.
    WindowHand::Choose(kDisplay, "View/Follow/Arrakis");
    const char* const turning = "View/Frame/Rotating With/BoskVeld";
    WindowHand::Choose(kDisplay, turning);
    EXPECT_TRUE(AppDriver::WaitUntil([=] { return WindowHand::IsMarked(kDisplay, turning); }));
    const char* const followed = "View/Frame/Followed Body";
    Does(kDisplay, followed, [=] { return WindowHand::IsMarked(kDisplay, followed); });
    std::vector<std::string> items = WindowHand::Items(kDisplay);
    const auto epoch = std::ranges::find(items, "View/Compare With/", Kind);
    ASSERT_NE(epoch, items.end());
    Does(kDisplay, *epoch, [=] { return WindowHand::IsMarked(kDisplay, *epoch); });
    Opens(kDisplay, "View/Compare With/Why Do They Differ", "Why They Differ");
    const char* const alone = "View/Compare With/Nothing";
    Does(kDisplay, alone, [=] { return WindowHand::IsMarked(kDisplay, alone); });
    OpensPanel(kDisplay, "View/Save Picture…");
    Opens(kDisplay, "View/Record Film…", "Record Film");
    std::string picture;
    EXPECT_TRUE(AppDriver::WaitUntil([&] {
        return std::exchange(picture, WindowHand::Picture(kDisplay)) == picture;
    })) << "it does not come to rest";
    Does(kDisplay, "View/Fit All Bodies", [&] { return WindowHand::Picture(kDisplay) != picture; });
    for (const char* const item :
         {"View/View From/X", "View/View From/Along the Orbit Of/Arrakis", "View/View From/Y",
          "View/View From/Above (Z)", "View/Measure/To/Arrakis", "View/Measure/Off"}) {
        picture = WindowHand::Picture(kDisplay);
        Does(kDisplay, item, [&] { return WindowHand::Picture(kDisplay) != picture; });
    }
    chosen_.insert("View/Measure/To the Next Click");  // shows the pointer alone
    Does(kDisplay, "Orvek/Open Recent/Clear List",
         [] { return !WindowHand::CanChoose(kDisplay, "Orvek/Open Recent/system"); });
    Does(kDisplay, "File/Save", IsSaved());
    for (const char* const item :
         {"File/Close", "Orvek/Quit Orvek", "Simulation/Make Run Again", "View/Throw In a Body"})
        chosen_.insert(item);
    ExpectAllChosen(kDisplay);
    Does(kDisplay, "View/Throw In a Body", History("Edit/Undo New Body"));
    Does(kDisplay, "File/Save", IsSaved());
    Does(kSystem, "New Display/Projection", [] { return WindowHand::Count(kDisplay) == 2; });
    Does(kDisplay, "File/Close", [] { return WindowHand::Count(kDisplay) == 1; });
    Does(kDisplay, "Orvek/Quit Orvek", [this] { return app_->HasEnded(); });
}

TEST_F(EveryItemTest, OfTheEpochs) {
    const char* const window = "Epochs for system";
    Does(kSystem, "Simulation/Epochs…", [&] { return WindowHand::Count(window) == 1; });
    Does(window, "Epoch/Log Current Epoch", History("Edit/Undo Log Epoch"));
    Does(window, "Edit/Undo", History("Edit/Redo Log Epoch"));
    Does(window, "Edit/Redo", History("Edit/Undo Log Epoch"));
    WindowHand::Press(window, WindowHand::Key::kHome);
    Does(window, "Epoch/Restore", History("Edit/Undo Go to Epoch"));
    Does(window, "Epoch/Rename", [&] { return WindowHand::IsRenaming(window); });
    WindowHand::Press(window, WindowHand::Key::kEscape);
    Does(window, "Epoch/Delete", History("Edit/Undo Delete Epoch"));
    ExpectAllChosen(window);
}

// The buttons that stand for items, and those that stand for themselves.
TEST_F(EveryItemTest, AndOfTheButtons) {
    const auto does = [](const char* button, const Condition& effect) {
        EXPECT_FALSE(effect()) << button;
        WindowHand::Click(kSystem, button);
        EXPECT_TRUE(AppDriver::WaitUntil(effect)) << button << " does nothing";
    };
    does("New Body", History("Edit/Undo New Body"));
    does("Now", History("Edit/Undo Center of Mass"));
    does("Go", History("Simulation/Pause"));
    does("Pause", History("Simulation/Go"));
    does("Trail & Disc…", [] { return WindowHand::Count("Display options for system") == 1; });
}

}  // namespace
