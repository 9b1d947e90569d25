// Benaphores, the model lock, and observers.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "Model/Sharing/Benaphore.h"
#include "Model/Sharing/Subject.h"
#include "Tests/Model/TestDocument.h"

namespace {

TEST(Benaphore, AcquiringSeveralWaitsForTheShortfallOnly) {
    Benaphore* ben = create_ben(0, "gate");
    EXPECT_EQ(release_ben(ben, 2), B_NO_ERROR);
    std::thread waiter([ben] { EXPECT_EQ(acquire_ben(ben, 5), B_NO_ERROR); });
    while (ben->count != -3)
        std::this_thread::yield();
    EXPECT_EQ(release_ben(ben, 2), B_NO_ERROR);
    EXPECT_EQ(release_ben(ben, 4), B_NO_ERROR);  // one of them is waited for
    waiter.join();
    EXPECT_EQ(ben->count, 3);
    int32 units = -1;
    EXPECT_EQ(get_sem_count(ben->sem, &units), B_OK);
    EXPECT_EQ(units, 0);
    EXPECT_EQ(acquire_ben(ben, 3), B_NO_ERROR);
    delete_ben(ben);
}

TEST(ReadWriteLock, ExcludesReadersAndWritersAlike) {
    ReadWriteLock lock("test");
    int32 balance = 0;
    std::vector<std::jthread> threads;
    for (const bool write : {true, false, false})
        threads.emplace_back([&lock, &balance, write] {
            for (int32 i = 0; i < 2000; i++) {
                write ? lock.WriteLock() : lock.ReadLock();
                balance++;
                std::this_thread::yield();
                EXPECT_EQ(balance, 1);
                balance--;
                write ? lock.WriteUnlock() : lock.ReadUnlock();
            }
        });
}

TEST(ReadWriteLockDeathTest, NestingStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ReadWriteLock lock("test");
    EXPECT_DEATH((lock.WriteLock(), lock.ReadLock()), "Attempted nested ReadLock\\(\\)\\.");
    EXPECT_DEATH((lock.ReadLock(), lock.WriteLock()), "Attempted nested WriteLock\\(\\)\\.");
}

TEST(Subject, TellsEachObserverOnceWhileBroadcasting) {
    Subject subject;
    TestObserver a;
    subject.AddObserver(&a);
    subject.AddObserver(&a);
    subject.TellObservers(0x10);
    EXPECT_EQ(a.calls, 1);
    subject.Broadcast(false);
    subject.TellObservers(0x20);
    EXPECT_FALSE(subject.CommitChanges());
    EXPECT_EQ(a.calls, 1);
    EXPECT_EQ(a.commits, 0);
    subject.Broadcast(true);
    subject.TellObservers(0x40);
    subject.RemoveObserver(&a);
    subject.TellObservers(0x80);
    EXPECT_EQ(a.last, 0x40);
}

TEST(Subject, CommitAsksAllThatAreLeftAndNestedCommitIsRefused) {
    Subject subject;
    TestObserver first, nesting, removed, last;
    nesting.onCommit = [&] {
        subject.RemoveObserver(&removed);
        return subject.CommitChanges();
    };
    for (TestObserver* observer : {&first, &nesting, &removed, &last})
        subject.AddObserver(observer);
    EXPECT_FALSE(subject.CommitChanges());
    first.answer = true;
    EXPECT_TRUE(subject.CommitChanges());
    EXPECT_EQ(first.commits, 2);
    EXPECT_EQ(removed.commits, 0);
    EXPECT_EQ(last.commits, 2);
}

// While one thread commits, others tell; and who removes an observer may delete it at once.
TEST(Subject, RemovalWaitsForTheCommitThatRunsElsewhere) {
    Subject subject;
    std::atomic<bool> asked = false;
    std::atomic<bool> told = false;
    std::atomic<bool> answered = false;
    auto observer = std::make_unique<TestObserver>();
    observer->onCommit = [&] {
        asked = true;
        asked.notify_all();
        told.wait(false);
        answered = true;
        return true;
    };
    subject.AddObserver(observer.get());
    std::thread committer([&] { EXPECT_TRUE(subject.CommitChanges()); });
    asked.wait(false);
    std::thread teller([&] {
        subject.TellObservers(1);  // would wait forever if the commit held the list
        told = true;
        told.notify_all();
    });
    subject.RemoveObserver(observer.get());
    EXPECT_TRUE(answered);
    observer.reset();
    committer.join();
    teller.join();
}

}  // namespace
