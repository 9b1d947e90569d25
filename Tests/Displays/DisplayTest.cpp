#include "Display.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "ChangeFlags.h"
#include "TestDocument.h"
#include "WaitUntil.h"

namespace {

// Counts what it is asked to do; draws for a while.
class CountingDisplay : public Display {
public:
    explicit CountingDisplay(TestDocument* document, bigtime_t drawTime = 0)
        : Display({100, 100, 300, 300}, "counting", B_DOCUMENT_WINDOW, document->portal,
                  document->writeOk, document->owner, TestContext().texts),
          drawTime_(drawTime) {}

    void DisplayData() override {
        if (drawTime_ > 0) snooze(drawTime_);
        drawn++;
    }
    void ReadData(int32 count, double*, double*, double*) override {
        read++;
        reports += count;
    }
    void Redisplay(int32 changes) override {
        const std::lock_guard lock(mutex_);
        redisplays_.push_back(changes);
        handled_.notify_all();
    }

    std::vector<int32> WaitForRedisplays(std::size_t count) {
        std::unique_lock lock(mutex_);
        handled_.wait(lock, [&] { return redisplays_.size() >= count; });
        return redisplays_;
    }

    std::atomic<int32> drawn{0};
    std::atomic<int32> read{0};
    std::atomic<int64> reports{0};

private:
    const bigtime_t drawTime_;
    std::mutex mutex_;
    std::condition_variable handled_;
    std::vector<int32> redisplays_;
};

std::size_t CountIn(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

#ifdef ORVEK_SANITIZED
constexpr int64 kMemoryGrowth = INT64_MAX;  // sanitizers keep what was freed
#else
constexpr int64 kMemoryGrowth = 16'000'000;
#endif

// In bytes.
int64 ResidentMemory() {
    std::ifstream file("/proc/self/statm");
    int64 size = 0;
    int64 resident = 0;
    file >> size >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

// What has ended may take a moment to disappear.
bool FallsTo(const char* folder, std::size_t count) {
    return WaitUntil([&] { return CountIn(folder) <= count; });
}

constexpr const char* kThreads = "/proc/self/task";
constexpr const char* kHandles = "/proc/self/fd";

}  // namespace

TEST(Display, ManyChangesAreOneRedisplay) {
    TestDocument document;
    auto* const display = new CountingDisplay(&document);
    ASSERT_EQ(display->Init("Tests"), 0);
    EXPECT_EQ(display->Title(), "Generic Display of Tests");
    document.Add(display);
    display->Run();
    // The one from the construction.
    EXPECT_EQ(display->WaitForRedisplays(1), std::vector<int32>{-1});

    display->Lock();
    for (const int32 change : {kTrailChanged, kDiscChanged, kSystemAdded})
        document.portal->TellObservers(change);
    display->Unlock();
    EXPECT_EQ(display->WaitForRedisplays(2).back(), kTrailChanged | kDiscChanged | kSystemAdded);
    display->Changed(0);
    EXPECT_EQ(display->WaitForRedisplays(3).back(), 0);
    display->Changed(kNameChanged);
    EXPECT_EQ(display->WaitForRedisplays(4).back(), kNameChanged);

    // A run's preparation supersedes what waits.
    display->Lock();
    display->Changed(kTrailChanged);
    display->PrepareForGo(100);
    display->Unlock();
    EXPECT_EQ(display->WaitForRedisplays(5).back(), 0);
}

// The port holds 100 messages; the one redisplay must come through.
TEST(Display, AFullPortDoesNotSwallowTheRedisplay) {
    TestDocument document;
    auto* const display = new CountingDisplay(&document);
    ASSERT_EQ(display->Init("Tests"), 0);
    document.Add(display);
    display->Run();
    display->WaitForRedisplays(1);
    display->Lock();
    while (display->PostMessage(FourCC("fill")) == B_OK) {
    }
    display->Changed(kDiscChanged);
    display->Unlock();
    EXPECT_EQ(display->WaitForRedisplays(2).back(), kDiscChanged);
}

TEST(Display, QuitsWithoutInitAndLeavesTheBenaphoresAlone) {
    TestDocument document;
    const int32 before = document.writeOk->count;
    auto* const display = new CountingDisplay(&document);
    display->Quit();
    EXPECT_EQ(document.writeOk->count, before);
    document.portal->TellObservers(-1);  // it is no observer any more
}

TEST(Display, TheCloseBoxHidesItAndAsksTheOwner) {
    TestDocument document;
    auto* const display = new CountingDisplay(&document);
    ASSERT_EQ(display->Init("Tests"), 0);
    document.Add(display);
    display->Show();
    ASSERT_EQ(display->PostMessage(FourCC("_QRQ")), B_OK);
    const BMessage message = document.owner->WaitFor(FourCC("klme"));
    void* doomed = nullptr;
    EXPECT_EQ(message.FindPointer("Doomed Display", &doomed), B_OK);
    EXPECT_EQ(doomed, display);
    EXPECT_TRUE(display->IsHidden());
    for (const uint32 what : {FourCC("save"), FourCC("undo"), FourCC("redo"), FourCC("tgps")}) {
        ASSERT_EQ(display->PostMessage(what), B_OK);
        document.owner->WaitFor(what);
    }
}

TEST(Display, ComeAndGoDuringARun) {
    TestDocument document;
    std::vector<CountingDisplay*> displays;
    const auto open = [&](bigtime_t drawTime) {
        auto* const display = new CountingDisplay(&document, drawTime);
        EXPECT_EQ(display->Init("Tests"), 0);
        display->Run();
        document.Add(display);
        displays.push_back(display);
    };
    for (const bigtime_t drawTime : {0, 0, 20'000})
        open(drawTime);
    const auto waitForBatches = [](CountingDisplay* display, int32 count) {
        const int32 enough = display->drawn + count;
        ASSERT_TRUE(WaitUntil([&] { return display->drawn >= enough; }));
    };
    document.Go();
    waitForBatches(displays[2], 3);
    document.Remove(displays[0]);
    waitForBatches(displays[2], 3);
    open(0);
    waitForBatches(displays[3], 3);
    document.Pause();
    // All have drawn everything, and each holds one unit.
    for (const std::size_t i : {1U, 2U, 3U})
        EXPECT_EQ(displays[i]->drawn, displays[i]->read) << i;
    EXPECT_EQ(document.writeOk->count, 3);
    // What was fast was held back by what was slow.
    EXPECT_EQ(displays[1]->read, displays[2]->read);
}

TEST(Display, ManyRunsLeaveNothingBehind) {
    constexpr int kCycles = 1000;
    constexpr int kWarmUp = 200;
    const std::size_t threads = CountIn(kThreads);
    std::size_t handles = 0;
    int64 memory = 0;
    for (int i = 0; i < kCycles; i++) {
        TestDocument document;
        ProjectionDisplay* const display = document.AddProjection();
        ASSERT_NE(display, nullptr);
        document.Run(20);
        if (i % 2 == 0) document.Remove(display);
        if (i != kWarmUp) continue;
        handles = CountIn(kHandles);
        memory = ResidentMemory();
    }
    EXPECT_TRUE(FallsTo(kThreads, threads)) << CountIn(kThreads) << " of " << threads;
    EXPECT_TRUE(FallsTo(kHandles, handles)) << CountIn(kHandles) << " of " << handles;
    // The picture of a display alone has more than a megabyte.
    EXPECT_LT(ResidentMemory() - memory, kMemoryGrowth);
}

// They come, go, are moved and are slow, all in the middle of it.
TEST(Display, ARunHasTheSameBitsWhateverTheDisplaysDo) {
    constexpr int64 kSteps = 40'000;
    TestDocument alone;
    alone.Run(kSteps);

    TestDocument watched;
    auto* const slow = new CountingDisplay(&watched, 5000);
    ASSERT_EQ(slow->Init("Tests"), 0);
    slow->Run();
    watched.Add(slow);
    ProjectionDisplay* const first = watched.AddProjection();
    ASSERT_NE(first, nullptr);
    watched.document.GetCalculator()->SetRunLimit(kSteps, HUGE_VAL);
    watched.Go();
    const auto letItRun = [slow] {
        const int32 enough = slow->drawn + 2;
        ASSERT_TRUE(WaitUntil([&] { return slow->drawn >= enough; }));
    };
    const auto change = [](ProjectionDisplay* display, auto work) {
        display->Lock();
        work(*display);
        display->Unlock();
    };
    letItRun();
    ProjectionDisplay* const second = watched.AddProjection();
    ASSERT_NE(second, nullptr);
    letItRun();
    change(first, [](ProjectionDisplay& display) { display.ZoomAbout({10, 10}, 3.0); });
    first->ResizeTo(700, 500);
    letItRun();
    watched.Remove(first);
    change(second, [](ProjectionDisplay& display) { display.Follow(1); });
    letItRun();
    change(second, [](ProjectionDisplay& display) { display.FitAll(); });
    watched.Remove(second);
    letItRun();
    ASSERT_LT(slow->reports, kSteps) << "the run was over before all was done";
    ASSERT_TRUE(WaitUntil([&] { return slow->reports == kSteps; }));
    watched.Pause();
    EXPECT_EQ(BitsOf(&watched.document), BitsOf(&alone.document));
}
