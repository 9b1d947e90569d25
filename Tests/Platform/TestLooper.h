// A looper for the tests: writes the messages that reach it into a log, which outlives it, and does
// a few things on request.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "BLooper.h"
#include "BMessage.h"

// What happened, for any thread to look at.
class LooperLog {
public:
    void Add(uint32 what);
    void SetDeleted();
    // Wait until it is so.
    void AwaitCount(std::size_t count);
    void AwaitDeletion();

    [[nodiscard]] std::vector<uint32> Whats() const;
    [[nodiscard]] bool IsDeleted() const;

private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<uint32> whats_;
    bool isDeleted_ = false;
};

class TestLooper : public BLooper {
public:
    // Keeps the looper busy, and so locked, until ReleaseOne.
    static constexpr uint32 kHold = FourCC("hold");

    explicit TestLooper(int32 portCapacity = 0) : BLooper("test looper", 10, portCapacity) {}
    ~TestLooper() override;

    void MessageReceived(BMessage* message) override;
    bool QuitRequested() override;

    [[nodiscard]] std::shared_ptr<LooperLog> Log() const { return log_; }

    // Both before Run. What to do with a message after it was logged, and the answer to
    // QuitRequested.
    void SetAction(std::function<void(BMessage*)> action) { action_ = std::move(action); }
    void SetQuitAnswer(bool answer) { quitAnswer_ = answer; }

    // Posts kHold and returns when it is being handled.
    void Hold();
    // Lets it go on. It needs no lock: the looper is known to be busy.
    void ReleaseHold() { release_sem(mayGoOn_); }

private:
    const std::shared_ptr<LooperLog> log_ = std::make_shared<LooperLog>();
    std::function<void(BMessage*)> action_;
    bool quitAnswer_ = true;
    const sem_id isHeld_ = create_sem(0, "is held");
    const sem_id mayGoOn_ = create_sem(0, "may go on");
};

// Locks the looper, which lives, and quits it from the calling thread.
void QuitFromHere(BLooper* looper);
