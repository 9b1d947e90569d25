// A looper for the tests: writes the messages that reach it into a log, which outlives it, and does
// a few things on request.
#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <semaphore>
#include <vector>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"

// What happened, for any thread to look at.
class LooperLog {
public:
    void Add(uint32 what) {
        std::lock_guard lock(mutex_);
        whats_.push_back(what);
        changed_.notify_all();
    }
    void SetDeleted() {
        std::lock_guard lock(mutex_);
        isDeleted_ = true;
        changed_.notify_all();
    }
    // Wait until it is so.
    void AwaitCount(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return whats_.size() >= count; });
    }
    void AwaitDeletion() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return isDeleted_; });
    }

    [[nodiscard]] std::vector<uint32> Whats() const {
        std::lock_guard lock(mutex_);
        return whats_;
    }
    [[nodiscard]] bool IsDeleted() const {
        std::lock_guard lock(mutex_);
        return isDeleted_;
    }

private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<uint32> whats_;
    bool isDeleted_ = false;
};

class TestLooper : public BLooper {
public:
    // Keeps the looper busy, and so locked, until ReleaseHold.
    static constexpr uint32 kHold = FourCC("hold");

    explicit TestLooper(int32 portCapacity = 0) : BLooper("test looper", 10, portCapacity) {}
    ~TestLooper() override { log_->SetDeleted(); }

    void MessageReceived(BMessage* message) override {
        if (message->what == kHold) {
            isHeld_.release();
            mayGoOn_.acquire();
            return;
        }
        log_->Add(message->what);
        if (action_) action_(message);
    }
    bool QuitRequested() override {
        log_->Add(B_QUIT_REQUESTED);
        return quitAnswer_;
    }

    [[nodiscard]] std::shared_ptr<LooperLog> Log() const { return log_; }

    // Both before Run. What to do with a message after it was logged, and the answer to
    // QuitRequested.
    void SetAction(std::function<void(BMessage*)> action) { action_ = std::move(action); }
    void SetQuitAnswer(bool answer) { quitAnswer_ = answer; }

    // Posts kHold and returns when it is being handled.
    void Hold() {
        ASSERT_EQ(PostMessage(kHold), B_OK);
        isHeld_.acquire();
    }
    // Lets it go on. It needs no lock: the looper is known to be busy.
    void ReleaseHold() { mayGoOn_.release(); }

private:
    const std::shared_ptr<LooperLog> log_ = std::make_shared<LooperLog>();
    std::function<void(BMessage*)> action_;
    bool quitAnswer_ = true;
    std::binary_semaphore isHeld_{0};
    std::binary_semaphore mayGoOn_{0};
};

// Locks the looper, which lives, and quits it from the calling thread.
inline void QuitFromHere(BLooper* looper) {
    ASSERT_TRUE(looper->Lock());
    looper->Quit();
}
