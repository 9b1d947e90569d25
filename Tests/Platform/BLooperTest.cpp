// Loopers: the order of messages, the bounded port, handlers, the lock, and every way to quit.
#include "BLooper.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <numeric>
#include <thread>

#include "AppDefs.h"
#include "BMessage.h"
#include "BMessenger.h"
#include "TestLooper.h"

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

ON_DEAD_LOOPER bool IsDeadLocked(BLooper* looper) {
    return looper->IsLocked();
}

class LoggingHandler : public BHandler {
public:
    void MessageReceived(BMessage* message) override {
        log.Add(message->what);
        if (passesOn) BHandler::MessageReceived(message);
    }
    LooperLog log;
    bool passesOn = false;
};

}  // namespace

// --- Messages ---

TEST(BLooper, HandlesMessagesInOrderOfArrival) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    std::vector<uint32> expected(80);
    std::iota(expected.begin(), expected.end(), 0u);
    for (uint32 what = 0; what < 40; what++)
        EXPECT_EQ(looper->PostMessage(what), B_OK);
    EXPECT_TRUE(log->Whats().empty()) << "nothing is handled before Run";
    EXPECT_GT(looper->Run(), 0);
    for (uint32 what = 40; what < 80; what++)
        EXPECT_EQ(looper->PostMessage(what), B_OK);
    QuitFromHere(looper);
    EXPECT_EQ(log->Whats(), expected);
}

TEST(BLooper, KeepsTheOrderOfEverySender) {
    constexpr uint32 kSenders = 4;
    constexpr uint32 kMessages = 500;
    auto* const looper = new TestLooper(8);
    const auto log = looper->Log();
    const BMessenger target(looper);
    looper->Run();
    std::vector<std::thread> senders;
    for (uint32 sender = 0; sender < kSenders; sender++) {
        senders.emplace_back([&target, sender] {
            for (uint32 i = 0; i < kMessages; i++)
                EXPECT_EQ(target.SendMessage(sender << 16 | i), B_OK);
        });
    }
    for (std::thread& sender : senders)
        sender.join();
    QuitFromHere(looper);
    std::map<uint32, uint32> next;
    for (const uint32 what : log->Whats())
        EXPECT_EQ(what & 0xFFFF, next[what >> 16]++);
    for (uint32 sender = 0; sender < kSenders; sender++)
        EXPECT_EQ(next[sender], kMessages);
}

TEST(BLooper, FullPortRefusesMessages) {
    for (const int32 capacity : {0, -3, 7}) {
        const int32 room = capacity > 0 ? capacity : BLooper::kDefaultPortCapacity;
        auto* const looper = new TestLooper(capacity);
        const auto log = looper->Log();
        for (int32 i = 0; i < room; i++)
            EXPECT_EQ(looper->PostMessage(kWork), B_OK);
        EXPECT_EQ(looper->PostMessage(kWork), B_WOULD_BLOCK);

        looper->Run();
        log->AwaitCount(static_cast<std::size_t>(room));
        // The port is emptied between messages, so it fills up while one is being handled.
        looper->Hold();
        for (int32 i = 0; i < room; i++)
            EXPECT_EQ(looper->PostMessage(kWork), B_OK);
        EXPECT_EQ(looper->PostMessage(kWork), B_WOULD_BLOCK);
        looper->ReleaseHold();
        QuitFromHere(looper);  // needs no room in the port
        EXPECT_EQ(log->Whats().size(), static_cast<std::size_t>(2 * room));
    }
}

TEST(BLooper, PostingCopiesTheMessage) {
    auto* const looper = new TestLooper;
    std::string received;
    looper->SetAction([&](BMessage* message) { message->FindString("text", &received); });
    BMessage message(kWork);
    message.AddString("text", "before");
    EXPECT_EQ(looper->PostMessage(&message), B_OK);
    message.ReplaceString("text", "after");
    EXPECT_EQ(looper->PostMessage(static_cast<const BMessage*>(nullptr)), B_BAD_VALUE);
    looper->Run();
    QuitFromHere(looper);
    EXPECT_EQ(received, "before");
}

// --- Handlers ---

TEST(BLooper, DeliversToTheHandlerAddressed) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    LoggingHandler first;
    LoggingHandler second;
    EXPECT_EQ(looper->PostMessage(kWork, &first), B_MISMATCHED_VALUES);
    looper->AddHandler(&first);
    looper->AddHandler(&first);
    looper->AddHandler(&second);
    EXPECT_EQ(looper->CountHandlers(), 3);
    EXPECT_EQ(looper->HandlerAt(0), looper);
    EXPECT_EQ(looper->HandlerAt(2), &second);
    EXPECT_EQ(looper->HandlerAt(3), nullptr);
    second.passesOn = true;

    EXPECT_EQ(looper->PostMessage(1, &first), B_OK);
    EXPECT_EQ(looper->PostMessage(2, &second), B_OK);                // passed on to the looper
    EXPECT_EQ(looper->PostMessage(3, nullptr), B_OK);                // no handler is preferred yet
    EXPECT_EQ(looper->PostMessage(B_QUIT_REQUESTED, &first), B_OK);  // not the looper's own
    looper->Run();
    log->AwaitCount(2);
    first.log.AwaitCount(2);
    ASSERT_TRUE(looper->Lock());
    looper->SetPreferredHandler(&first);
    EXPECT_EQ(looper->PreferredHandler(), &first);
    looper->Unlock();
    EXPECT_EQ(looper->PostMessage(4, nullptr), B_OK);
    QuitFromHere(looper);

    EXPECT_EQ(log->Whats(), (std::vector<uint32>{2, 3}));
    EXPECT_EQ(first.log.Whats(), (std::vector<uint32>{1, B_QUIT_REQUESTED, 4}));
    EXPECT_EQ(second.log.Whats(), std::vector<uint32>{2});
    EXPECT_EQ(first.Looper(), nullptr) << "the looper lets its handlers go";
    EXPECT_FALSE(first.LockLooper());
}

TEST(BLooper, DropsMessagesForHandlersThatLeft) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    LoggingHandler removed;
    LoggingHandler front;
    auto deleted = std::make_unique<LoggingHandler>();
    for (BHandler* handler : {static_cast<BHandler*>(&removed), static_cast<BHandler*>(&front),
                              static_cast<BHandler*>(deleted.get())})
        looper->AddHandler(handler);
    front.SetNextHandler(&removed);
    looper->SetPreferredHandler(&removed);

    EXPECT_EQ(looper->PostMessage(1, &removed), B_OK);
    EXPECT_EQ(looper->PostMessage(2, deleted.get()), B_OK);
    EXPECT_EQ(looper->PostMessage(3, nullptr), B_OK);
    EXPECT_TRUE(looper->RemoveHandler(&removed));
    EXPECT_FALSE(looper->RemoveHandler(&removed));
    EXPECT_EQ(looper->PreferredHandler(), nullptr);
    EXPECT_EQ(front.NextHandler(), looper) << "the chain closes behind the one that left";
    looper->SetPreferredHandler(&removed);
    EXPECT_EQ(looper->PreferredHandler(), nullptr) << "only a handler of this looper counts";
    deleted.reset();
    EXPECT_EQ(looper->CountHandlers(), 2);
    looper->Run();
    QuitFromHere(looper);
    EXPECT_EQ(log->Whats(), std::vector<uint32>{3});
    EXPECT_TRUE(removed.log.Whats().empty());
}

TEST(BLooper, HandlerLocksTheLooperItBelongsTo) {
    auto* const looper = new TestLooper;
    looper->Run();
    BHandler handler("a handler");
    EXPECT_FALSE(handler.LockLooper());
    ASSERT_TRUE(looper->Lock());
    looper->AddHandler(&handler);
    looper->Unlock();
    EXPECT_TRUE(handler.LockLooper());
    EXPECT_TRUE(looper->IsLocked());
    std::thread([&] { EXPECT_EQ(handler.LockLooperWithTimeout(0), B_WOULD_BLOCK); }).join();
    handler.UnlockLooper();

    BMessage archive;
    EXPECT_EQ(handler.Archive(&archive), B_OK);
    EXPECT_EQ(BHandler(&archive).Name(), "a handler");
    EXPECT_EQ(BHandler().Archive(&archive), B_OK);
    QuitFromHere(looper);
}

TEST(BLooper, HandlersComeAndGoWhileItRuns) {
    auto* const looper = new TestLooper;
    looper->Run();
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; i++) {
        threads.emplace_back([looper] {
            for (int round = 0; round < 200; round++) {
                LoggingHandler handler;
                ASSERT_TRUE(looper->Lock());
                looper->AddHandler(&handler);
                looper->Unlock();
                if (looper->PostMessage(kWork, &handler) != B_OK) continue;
                if (round % 2 == 0) handler.log.AwaitCount(1);
                // The destructor must not overlap with a call of MessageReceived.
                ASSERT_TRUE(handler.LockLooper());
                looper->RemoveHandler(&handler);
                looper->Unlock();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QuitFromHere(looper);
}

// --- Lock ---

TEST(BLooper, IsBornLockedAndUnlockedByRun) {
    auto* const looper = new TestLooper;
    EXPECT_TRUE(looper->IsLocked());
    EXPECT_EQ(looper->CountLocks(), 1);
    EXPECT_EQ(looper->LockingThread(), find_thread(nullptr));
    EXPECT_EQ(looper->Thread(), -1);
    const thread_id thread = looper->Run();
    EXPECT_EQ(looper->Thread(), thread);
    EXPECT_FALSE(looper->IsLocked());

    looper->Hold();
    EXPECT_EQ(looper->LockingThread(), thread) << "its thread holds the lock meanwhile";
    EXPECT_EQ(looper->LockWithTimeout(0), B_WOULD_BLOCK);
    EXPECT_EQ(looper->LockWithTimeout(10'000), B_TIMED_OUT);
    looper->ReleaseHold();
    EXPECT_TRUE(looper->Lock());
    EXPECT_TRUE(looper->Lock());
    EXPECT_EQ(looper->CountLocks(), 2);
    looper->Quit();  // gives up all locks
}

TEST(BLooper, RefusesEverythingWhenItIsGone) {
    BLooper* const looper = new TestLooper;
    looper->Run();
    QuitFromHere(looper);
    EXPECT_FALSE(LockDead(looper));
    EXPECT_EQ(LockDead(looper, 0), B_BAD_VALUE);
    EXPECT_EQ(PostToAnyone(looper), B_BAD_VALUE);
    EXPECT_FALSE(IsDeadLocked(looper));
    EXPECT_EQ(BLooper::LockIfAlive(looper), B_BAD_VALUE);
    EXPECT_EQ(BLooper::LockIfAlive(nullptr), B_BAD_VALUE);
}

TEST(BLooper, LockFailsWhenItGoesMeanwhile) {
    auto* const looper = new TestLooper;
    looper->Run();
    looper->Hold();
    EXPECT_EQ(looper->PostMessage(B_QUIT_REQUESTED), B_OK);
    const auto log = looper->Log();
    std::vector<std::thread> lockers;
    for (int i = 0; i < 3; i++) {
        lockers.emplace_back([looper] {
            // The looper's thread gets its turn among these, and then ends.
            while (LockDead(looper, B_INFINITE_TIMEOUT) == B_OK)
                looper->Unlock();
            EXPECT_EQ(LockDead(looper, B_INFINITE_TIMEOUT), B_BAD_VALUE);
        });
    }
    looper->ReleaseHold();
    for (std::thread& locker : lockers)
        locker.join();
    log->AwaitDeletion();
}

TEST(BLooper, WaitingLockerLearnsOfTheEnd) {
    auto* const looper = new TestLooper;
    looper->Lock();
    status_t result = B_OK;
    const sem_id isAbout = create_sem(0, "is about to wait");
    std::thread locker([&] {
        release_sem(isAbout);
        result = BLooper::LockIfAlive(looper);
    });
    acquire_sem(isAbout);
    looper->Quit();  // never run: deleted at once
    locker.join();
    EXPECT_TRUE(result == B_BAD_SEM_ID || result == B_BAD_VALUE) << result;
    delete_sem(isAbout);
}

// --- Quitting ---

TEST(BLooper, QuitBeforeRunDeletesIt) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    EXPECT_EQ(looper->PostMessage(kWork), B_OK);
    looper->Quit();
    EXPECT_TRUE(log->IsDeleted());
    EXPECT_TRUE(log->Whats().empty());
}

TEST(BLooper, QuitFromAnotherThreadHandlesWhatWaits) {
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

TEST(BLooper, QuitFromItsOwnThreadDoesNotReturn) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    looper->SetAction([looper, log](BMessage* message) {
        if (message->what != 1) return;
        looper->Lock();
        looper->Quit();
        log->Add(FourCC("back"));
    });
    EXPECT_EQ(looper->PostMessage(1), B_OK);
    EXPECT_EQ(looper->PostMessage(2), B_OK);
    const thread_id thread = looper->Run();
    wait_for_thread(thread, nullptr);
    EXPECT_TRUE(log->IsDeleted());
    EXPECT_EQ(log->Whats(), std::vector<uint32>{1}) << "what waits is not handled any more";
}

TEST(BLooper, QuitRequestedDecides) {
    for (const bool answer : {false, true}) {
        auto* const looper = new TestLooper;
        const auto log = looper->Log();
        looper->SetQuitAnswer(answer);
        EXPECT_EQ(looper->PostMessage(B_QUIT_REQUESTED), B_OK);
        EXPECT_EQ(looper->PostMessage(kWork), B_OK);
        const thread_id thread = looper->Run();
        if (answer) {
            wait_for_thread(thread, nullptr);
            EXPECT_EQ(log->Whats(), std::vector<uint32>{B_QUIT_REQUESTED});
        } else {
            log->AwaitCount(2);
            EXPECT_FALSE(log->IsDeleted());
            QuitFromHere(looper);
            EXPECT_EQ(log->Whats(), (std::vector<uint32>{B_QUIT_REQUESTED, kWork}));
        }
        EXPECT_TRUE(log->IsDeleted());
    }
}

TEST(BLooper, QuitWithoutTheLockTakesItAndComplains) {
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

TEST(BLooper, SeveralThreadsMayQuitIt) {
    auto* const looper = new TestLooper;
    const auto log = looper->Log();
    looper->Run();
    std::atomic<int> quitters{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; i++) {
        threads.emplace_back([&] {
            if (!LockDead(looper)) return;
            quitters++;
            looper->Quit();
            EXPECT_TRUE(log->IsDeleted());
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GE(quitters, 1);
}

TEST(BLooper, PostingWhileItQuitsIsSafe) {
    for (const bool fromWithin : {false, true}) {
        auto* const looper = new TestLooper(4);
        const auto log = looper->Log();
        const BMessenger target(looper);
        looper->Run();
        std::vector<std::thread> posters;
        for (int i = 0; i < 2; i++) {
            posters.emplace_back([looper] {
                status_t status = B_OK;
                while (status == B_OK || status == B_WOULD_BLOCK)
                    status = PostToAnyone(looper);
                EXPECT_TRUE(status == B_BAD_VALUE || status == B_BAD_PORT_ID);
            });
            posters.emplace_back([&target] {
                status_t status = B_OK;
                while (status == B_OK)
                    status = target.SendMessage(kWork);
                EXPECT_EQ(status, B_BAD_PORT_ID);
            });
        }
        log->AwaitCount(200);
        if (fromWithin)
            EXPECT_EQ(target.SendMessage(B_QUIT_REQUESTED), B_OK);
        else
            QuitFromHere(looper);
        for (std::thread& poster : posters)
            poster.join();
        log->AwaitDeletion();
        EXPECT_FALSE(target.IsValid());
    }
}

namespace {

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

TEST(BLooper, OwnerMayDeleteItAfterItsThread) {
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

TEST(BLooperDeathTest, ProgrammingErrorsStop) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            auto* const looper = new TestLooper;
            looper->Run();
            BHandler handler;
            looper->AddHandler(&handler);
        },
        "must be locked");
    EXPECT_DEATH(
        {
            auto* const looper = new TestLooper;
            looper->Run();
            looper->Lock();
            looper->Run();
        },
        "was run before");
    EXPECT_DEATH(
        {
            auto* const looper = new TestLooper;
            looper->Run();
            delete looper;
        },
        "deleted while its thread runs");
}
