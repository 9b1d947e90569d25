// The life of a looper: its lock, every way to quit, and calls that meet its end.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Support/BAutolock.h"
#include "Tests/Platform/TestLooper.h"

namespace {

constexpr uint32 kWork = FourCC("work");

// Calls on a looper that is gone are allowed: they compare the pointer only. A sanitizer that looks
// at the object before each call cannot know that.
#define ON_DEAD_LOOPER __attribute__((no_sanitize("vptr")))

ON_DEAD_LOOPER bool LockDead(BLooper* looper) {
    return looper->Lock();
}

ON_DEAD_LOOPER status_t LockDead(BLooper* looper, bigtime_t timeout) {
    return looper->LockWithTimeout(timeout);
}

ON_DEAD_LOOPER status_t PostToAnyone(BLooper* looper) {
    return looper->PostMessage(kWork);
}

// A looper that its owner deletes after its thread has ended, as an application object is.
class OwnedLooper : public BLooper {
public:
    using BLooper::BLooper;
    void Quit() override { EndLoop(); }

protected:
    void ThreadMain() override {
        Loop();
        Unlock();
    }
};

}  // namespace

// --- Lock ---

TEST(LooperLife, AGuardLocksItForABlockAndItIsQuitOnce) {
    auto* const looper = new BLooper("doomed");
    looper->Run();
    {
        const BAutolock lock(looper);
        EXPECT_TRUE(lock.IsLocked());
        EXPECT_TRUE(looper->IsLocked());
    }
    EXPECT_FALSE(looper->IsLocked());
    EXPECT_TRUE(BLooper::QuitIfAlive(looper));
    EXPECT_FALSE(BLooper::QuitIfAlive(looper));
    EXPECT_FALSE(BLooper::QuitIfAlive(nullptr));
}

TEST(LooperLife, IsBornLockedAndUnlockedByRun) {
    auto* const looper = new TestLooper;
    EXPECT_TRUE(looper->IsLocked());
    EXPECT_EQ(looper->Thread(), -1);
    const thread_id thread = looper->Run();
    EXPECT_EQ(looper->Thread(), thread);
    EXPECT_FALSE(looper->IsLocked());
    looper->Hold();
    EXPECT_EQ(looper->LockingThread(), thread) << "its thread holds the lock meanwhile";
    EXPECT_EQ(looper->LockWithTimeout(10'000), B_TIMED_OUT);
    looper->ReleaseHold();
    EXPECT_TRUE(looper->Lock());
    EXPECT_TRUE(looper->Lock());
    looper->Quit();  // gives up all locks
}

TEST(LooperLife, RefusesEverythingWhenItIsGone) {
    BLooper* const looper = new TestLooper;
    looper->Run();
    QuitFromHere(looper);
    EXPECT_FALSE(LockDead(looper));
    EXPECT_EQ(LockDead(looper, 0), B_BAD_VALUE);
    EXPECT_EQ(PostToAnyone(looper), B_BAD_VALUE);
    EXPECT_EQ(BLooper::LockIfAlive(looper), B_BAD_VALUE);
}

// --- Quitting ---

TEST(LooperLife, QuitBeforeRunDeletesIt) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    EXPECT_EQ(looper->PostMessage(kWork), B_OK);
    looper->Quit();
    EXPECT_TRUE(log->IsDeleted());
    EXPECT_TRUE(log->Whats().empty());
}

TEST(LooperLife, QuitFromAnotherThreadHandlesWhatWaits) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    looper->Run();
    looper->Hold();
    for (uint32 what = 1; what <= 3; what++)
        EXPECT_EQ(looper->PostMessage(what), B_OK);
    looper->ReleaseHold();
    QuitFromHere(looper);
    EXPECT_TRUE(log->IsDeleted()) << "Quit returns when all is over";
    EXPECT_EQ(log->Whats(), (std::vector<uint32>{1, 2, 3})) << "and does not ask QuitRequested";
}

TEST(LooperLife, QuitFromItsOwnThreadDoesNotReturn) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    looper->SetAction([looper, log](BMessage*) {
        looper->Lock();
        looper->Quit();
        log->Add(FourCC("back"));
    });
    EXPECT_EQ(looper->PostMessage(1), B_OK);
    EXPECT_EQ(looper->PostMessage(2), B_OK);
    wait_for_thread(looper->Run(), nullptr);
    EXPECT_TRUE(log->IsDeleted());
    EXPECT_EQ(log->Whats(), std::vector<uint32>{1}) << "what waits is not handled any more";
}

TEST(LooperLife, QuitRequestedDecides) {
    for (const bool answer : {false, true}) {
        auto* const looper = new TestLooper;
        const auto log = looper->Log();
        looper->SetQuitAnswer(answer);
        EXPECT_EQ(looper->PostMessage(B_QUIT_REQUESTED), B_OK);
        EXPECT_EQ(looper->PostMessage(kWork), B_OK);
        const thread_id thread = looper->Run();
        std::vector<uint32> expected{B_QUIT_REQUESTED};
        if (!answer) {
            expected.push_back(kWork);
            log->AwaitCount(2);
            QuitFromHere(looper);
        }
        wait_for_thread(thread, nullptr);
        EXPECT_EQ(log->Whats(), expected);
        EXPECT_TRUE(log->IsDeleted());
    }
}

TEST(LooperLife, QuitWithoutTheLockTakesItAndComplains) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    looper->Run();
    testing::internal::CaptureStderr();
    looper->Quit();
    const std::string complaint = testing::internal::GetCapturedStderr();
    EXPECT_NE(complaint.find("ERROR - you must Lock a looper before calling Quit(), team="),
              std::string::npos);
    EXPECT_TRUE(log->IsDeleted());
}

// Posters and those that ask for the lock meet its end, which several threads or its own ask for.
TEST(LooperLife, EveryCallMayMeetItsEnd) {
    for (const bool fromWithin : {false, true}) {
        auto* const looper = new TestLooper(4);
        const auto log = looper->Log();
        const BMessenger target(looper);
        looper->Run();
        std::vector<std::thread> threads;
        for (int i = 0; i < 2; i++) {
            threads.emplace_back([looper] {
                status_t status = B_OK;
                while (status == B_OK || status == B_WOULD_BLOCK)
                    status = PostToAnyone(looper);
                EXPECT_TRUE(status == B_BAD_VALUE || status == B_BAD_PORT_ID);
            });
            threads.emplace_back([&target] {
                status_t status = B_OK;
                while (status == B_OK)
                    status = target.SendMessage(kWork);
                EXPECT_EQ(status, B_BAD_PORT_ID);
            });
            threads.emplace_back([looper] {
                // The looper's thread gets its turn among these, and then ends.
                while (LockDead(looper, B_INFINITE_TIMEOUT) == B_OK)
                    looper->Unlock();
                EXPECT_EQ(LockDead(looper, B_INFINITE_TIMEOUT), B_BAD_VALUE);
            });
        }
        log->AwaitCount(200);
        if (fromWithin) {
            EXPECT_EQ(target.SendMessage(B_QUIT_REQUESTED), B_OK);
        }
        for (int i = 0; i < 3 && !fromWithin; i++)
            threads.emplace_back([looper, log] {
                if (!LockDead(looper)) return;
                looper->Quit();
                EXPECT_TRUE(log->IsDeleted());
            });
        for (std::thread& thread : threads)
            thread.join();
        log->AwaitDeletion();
        EXPECT_FALSE(target.IsValid());
    }
}

TEST(LooperLife, OwnerMayDeleteItAfterItsThread) {
    const auto looper = std::make_unique<OwnedLooper>("owned");
    const BMessenger target(looper.get());
    const thread_id thread = looper->Run();
    const BMessage request(B_QUIT_REQUESTED);
    BMessage reply;
    EXPECT_EQ(target.SendMessage(&request, &reply), B_OK);
    // This one outlives its Quit and answers.
    EXPECT_EQ(reply.what, B_REPLY);
    bool result = false;
    int32 answering = 0;
    EXPECT_EQ(reply.FindBool("result", &result), B_OK);
    EXPECT_TRUE(result);
    EXPECT_EQ(reply.FindInt32("thread", &answering), B_OK);
    EXPECT_EQ(answering, thread);
    wait_for_thread(thread, nullptr);
    EXPECT_TRUE(target.IsValid());
}

TEST(LooperLifeDeathTest, ProgrammingErrorsStop) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto* const looper = new TestLooper;
    looper->Run();
    BHandler handler;
    EXPECT_DEATH(looper->AddHandler(&handler), "must be locked");
    EXPECT_DEATH(delete looper, "deleted while its thread runs");
    QuitFromHere(looper);
}
