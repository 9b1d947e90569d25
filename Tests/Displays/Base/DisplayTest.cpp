#include "Displays/Base/Display.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Platform/WaitUntil.h"

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

// Says that only every third batch need be seen.
class FastCalculator final : public AbCalculator {
public:
    int32 SegmentLength() const override { return 2; }
    void SetSegmentLength(int32) override {}
    int32 UpdatesPerSecond() const override { return 80; }
    void SetUpdatesPerSecond(int32) override {}
    int32 BatchesPerUpdate() const override { return 3; }
};

// Counts how often its picture is shown.
class CountingSky final : public TrajectoryView {
public:
    using TrajectoryView::TrajectoryView;
    int shown = 0;

protected:
    std::vector<OverlayItem> MakeOverlay() override {
        shown++;
        return {};
    }
};

class PlainDisplay final : public TrajectoryDisplay {
public:
    explicit PlainDisplay(TestDocument* document)
        : TrajectoryDisplay({100, 100, 300, 300}, "plain", document->portal, document->writeOk,
                            document->owner, TestContext().texts) {}
    BPoint Map(double, double, double) override { return {}; }
    float DiscSize(double) override { return 1.0f; }

    CountingSky* sky = nullptr;

protected:
    TrajectoryView* MakeView() override { return sky = new CountingSky("sky", this); }
};

// With its drawing thread, among the displays of the document; its looper does not run yet.
CountingDisplay* Open(TestDocument* document, bigtime_t drawTime = 0) {
    auto* const display = new CountingDisplay(document, drawTime);
    EXPECT_EQ(display->Init("Tests"), 0);
    document->Add(display);
    return display;
}

}  // namespace

TEST(Display, ManyChangesAreOneRedisplay) {
    TestDocument document;
    CountingDisplay* const display = Open(&document);
    EXPECT_EQ(display->Title(), "Generic Display of Tests");
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
    CountingDisplay* const display = Open(&document);
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
    CountingDisplay* const display = Open(&document);
    display->Show();
    ASSERT_EQ(display->PostMessage(FourCC("_QRQ")), B_OK);
    const BMessage message = document.owner->WaitFor(FourCC("klme"));
    void* doomed = nullptr;
    EXPECT_EQ(message.FindPointer("Doomed Display", &doomed), B_OK);
    EXPECT_EQ(doomed, display);
    EXPECT_TRUE(display->IsHidden());
}

TEST(Display, ShowsOnlySomeOfTheBatchesThatWereCut) {
    TestDocument document;
    AbCalculator* const calculator = document.portal->GetCalculator();
    FastCalculator fast;
    document.portal->SetCalculator(&fast);
    auto* const display = new PlainDisplay(&document);
    ASSERT_EQ(display->Init("Tests"), 0);
    document.Add(display);
    display->Run();
    display->PrepareForGo(1);
    double time = 0.0;
    std::vector<double> places(3 * document.portal->BodiesInMassOrder().size());
    const int before = display->sky->shown;
    for (int batch = 1; batch <= 7; batch++) {
        places[0] = batch;
        display->ReadData(1, &time, places.data(), places.data());
        // In place of the drawing thread, which waits.
        display->DisplayData();
        EXPECT_EQ(display->sky->shown - before, batch / 3);
        EXPECT_FALSE(display->sky->Cache().HasBatch());
    }
    document.portal->SetCalculator(calculator);
}

// They come, go, are moved and are slow, all in the middle of it.
TEST(Display, ARunHasTheSameBitsWhateverTheDisplaysDo) {
    constexpr int64 kSteps = 40'000;
    TestDocument alone;
    alone.Run(kSteps);

    TestDocument watched;
    CountingDisplay* const quick = Open(&watched);
    CountingDisplay* const slow = Open(&watched, 5000);
    quick->Run();
    slow->Run();
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
    // All have drawn everything, and each holds one unit.
    EXPECT_EQ(slow->drawn, slow->read);
    EXPECT_EQ(quick->drawn, slow->read) << "the quick one waits for the slow one";
    EXPECT_EQ(watched.writeOk->count, 2);
    EXPECT_EQ(BitsOf(&watched.document), BitsOf(&alone.document));
}
