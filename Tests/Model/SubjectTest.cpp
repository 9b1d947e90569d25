// Benaphores, the model lock, and observers.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "Benaphore.h"
#include "Subject.h"
#include "TestDocument.h"

namespace {

void WaitUntilCountIs(const Benaphore* ben, int32 count) {
    while (ben->count != count)
        std::this_thread::yield();
}

TEST(Benaphore, AcquiringSeveralWaitsForTheShortfallOnly) {
    Benaphore* ben = create_ben(0, "gate");
    EXPECT_EQ(release_ben(ben, 2), B_NO_ERROR);
    std::thread waiter([ben] { EXPECT_EQ(acquire_ben(ben, 5), B_NO_ERROR); });
    WaitUntilCountIs(ben, -3);
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
    const auto work = [&](bool write) {
        for (int32 i = 0; i < 2000; i++) {
            write ? lock.WriteLock() : lock.ReadLock();
            balance++;
            EXPECT_EQ(balance, 1);
            balance--;
            write ? lock.WriteUnlock() : lock.ReadUnlock();
        }
    };
    std::thread reader(work, false);
    std::thread writer(work, true);
    work(false);
    reader.join();
    writer.join();
}

TEST(ReadWriteLockDeathTest, NestingStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ReadWriteLock lock("test");
    EXPECT_DEATH((lock.WriteLock(), lock.ReadLock()), "Attempted nested ReadLock\\(\\)\\.");
    EXPECT_DEATH((lock.ReadLock(), lock.WriteLock()), "Attempted nested WriteLock\\(\\)\\.");
}

// Runs a function when asked to commit.
class CommittingObserver : public Observer {
public:
    explicit CommittingObserver(std::function<bool()> commit) : commit_(std::move(commit)) {}
    void Changed(int32) override {}
    bool CommitChanges() override { return commit_(); }

private:
    std::function<bool()> commit_;
};

TEST(Subject, TellsEachObserverOnceWhileBroadcasting) {
    Subject subject;
    TestObserver a;
    subject.AddObserver(&a);
    subject.AddObserver(&a);
    subject.TellObservers(0x10);
    EXPECT_EQ(a.calls, 1);
    EXPECT_EQ(a.last, 0x10);
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

TEST(Subject, CommitAsksAllAndNestedCommitIsRefused) {
    Subject subject;
    TestObserver first;
    TestObserver last;
    bool inner = true;
    CommittingObserver nesting([&] {
        inner = subject.CommitChanges();
        return false;
    });
    subject.AddObserver(&first);
    subject.AddObserver(&nesting);
    subject.AddObserver(&last);
    EXPECT_FALSE(subject.CommitChanges());
    EXPECT_FALSE(inner);
    first.answer = true;
    EXPECT_TRUE(subject.CommitChanges());
    EXPECT_EQ(last.commits, 2);
    EXPECT_EQ(first.commits, 2);
}

TEST(Subject, ARemovedObserverIsNotAskedAnyMore) {
    Subject subject;
    TestObserver victim;
    CommittingObserver remover([&] {
        subject.RemoveObserver(&victim);
        return true;
    });
    subject.AddObserver(&remover);
    subject.AddObserver(&victim);
    EXPECT_TRUE(subject.CommitChanges());
    EXPECT_EQ(victim.commits, 0);
}

// While one thread commits, others tell; and who removes an observer may delete it at once.
TEST(Subject, RemovalWaitsForTheCommitThatRunsElsewhere) {
    Subject subject;
    std::atomic<bool> asked = false;
    std::atomic<bool> told = false;
    std::atomic<bool> answered = false;
    auto observer = std::make_unique<CommittingObserver>([&] {
        asked = true;
        asked.notify_all();
        told.wait(false);
        answered = true;
        return true;
    });
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
