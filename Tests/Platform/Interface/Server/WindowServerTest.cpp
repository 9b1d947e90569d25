#include "Platform/Interface/Server/WindowServer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>
#include <thread>
#include <vector>

#include "Platform/Application/BLooper.h"
#include "Tests/Platform/Interface/TestMain.h"

namespace {

constexpr uint32 kCount = FourCC("cnt ");
constexpr uint32 kStop = FourCC("stop");

// Notes the numbers it is sent; can be made to hang.
class Counter : public BLooper {
public:
    void MessageReceived(BMessage* message) override {
        if (message->what == kStop) {
            hangs.release();
            mayGoOn.acquire();
        }
        int32 number = 0;
        if (message->what != kCount || message->FindInt32("number", &number) != B_OK) return;
        numbers.push_back(number);
        if (number == last) done.release();
    }

    int32 last = -1;
    std::vector<int32> numbers;
    std::binary_semaphore hangs{0};
    std::binary_semaphore mayGoOn{0};
    std::binary_semaphore done{0};
};

BMessage Numbered(int32 number) {
    BMessage message(kCount);
    message.AddInt32("number", number);
    return message;
}

TEST(WindowServer, KeepsTheOrderOfEachThread) {
    constexpr int kThreads = 4;
    constexpr int kChanges = 5000;
    std::vector<std::vector<int>> seen(kThreads);
    std::vector<std::thread> threads;
    std::atomic<int> wrongAnswers{0};
    for (int t = 0; t < kThreads; t++)
        threads.emplace_back([&, t] {
            auto& mine = seen[static_cast<std::size_t>(t)];
            for (int i = 0; i < kChanges; i++) {
                WindowServer::Queue([&mine, i] { mine.push_back(i); });
                // A question comes after the changes that were queued before it.
                if (i % 500 == 0 && WindowServer::Ask([&mine] { return mine.back(); }) != i)
                    wrongAnswers++;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    WindowServer::Perform([] {});
    EXPECT_EQ(wrongAnswers, 0);
    for (const auto& mine : seen) {
        ASSERT_EQ(mine.size(), static_cast<std::size_t>(kChanges));
        for (int i = 0; i < kChanges; i++)
            ASSERT_EQ(mine[static_cast<std::size_t>(i)], i);
    }
}

TEST(WindowServer, AFullPortHoldsNobodyUpAndLosesNothing) {
    constexpr int32 kMessages = 1000;  // ten times what a port holds
    auto* const stuck = new Counter;
    auto* const other = new Counter;
    stuck->last = kMessages - 1;
    other->last = kMessages - 1;
    const BMessenger toStuck(static_cast<BHandler*>(stuck));
    const BMessenger toOther(static_cast<BHandler*>(other));
    stuck->Run();
    other->Run();
    WindowServer::Deliver(toStuck, BMessage(kStop));
    stuck->hangs.acquire();

    // Half of them from the server, half from here: both count for the order.
    WindowServer::Perform([&] {
        for (int32 i = 0; i < kMessages / 2; i++)
            WindowServer::Deliver(toStuck, Numbered(i));
    });
    for (int32 i = kMessages / 2; i < kMessages; i++)
        WindowServer::Deliver(toStuck, Numbered(i));
    for (int32 i = 0; i < kMessages; i++)
        WindowServer::Deliver(toOther, Numbered(i));
    other->done.acquire();
    EXPECT_TRUE(WindowServer::Ask([] { return true; }));

    stuck->mayGoOn.release();
    stuck->done.acquire();
    for (Counter* counter : {stuck, other}) {
        counter->Lock();
        ASSERT_EQ(counter->numbers.size(), static_cast<std::size_t>(kMessages));
        for (int32 i = 0; i < kMessages; i++)
            ASSERT_EQ(counter->numbers[static_cast<std::size_t>(i)], i);
        counter->Quit();
    }
}

TEST(WindowServer, DropsWhatIsForALooperThatIsGone) {
    auto* const looper = new Counter;
    const BMessenger messenger(static_cast<BHandler*>(looper));
    looper->Run();
    WindowServer::Deliver(messenger, BMessage(kStop));
    looper->hangs.acquire();
    for (int32 i = 0; i < 500; i++)
        WindowServer::Deliver(messenger, Numbered(i));
    looper->mayGoOn.release();
    looper->Lock();
    looper->Quit();
    WindowServer::Deliver(messenger, Numbered(0));
    EXPECT_TRUE(WindowServer::Ask([] { return true; }));
}

TEST(WindowServer, MeasuresItsLongestTurn) {
    WindowServer::Perform([] {});
    WindowServer::ResetLongestTurn();
    WindowServer::Perform([] { snooze(30000); });
    WindowServer::Perform([] {});
    EXPECT_GE(WindowServer::LongestTurn(), 30000);
    WindowServer::ResetLongestTurn();
    // Many short changes are not one long turn, on a busy machine either.
    for (int i = 0; i < 600; i++)
        WindowServer::Queue([] { snooze(500); });
    WindowServer::Perform([] {});
    EXPECT_LT(WindowServer::LongestTurn(), 150000);
}

TEST(WindowServer, AskersGetTheDefaultWhenItEnds) {
    constexpr int kAskers = 4;
    std::atomic<int> answered{0};
    std::counting_semaphore<kAskers> refused{0};
    std::vector<std::thread> askers;
    for (int t = 0; t < kAskers; t++)
        askers.emplace_back([&] {
            while (WindowServer::Ask([] { return true; }))
                answered++;
            refused.release();
        });
    while (answered < 1000)
        WindowServer::Perform([] {});
    RunOnMainThread([&] {
        EndServer();
        EXPECT_FALSE(WindowServer::Queue([] {}));
        for (int t = 0; t < kAskers; t++)
            refused.acquire();
        StartServer();
    });
    for (std::thread& asker : askers)
        asker.join();
    EXPECT_TRUE(WindowServer::Ask([] { return true; }));
}

}  // namespace
