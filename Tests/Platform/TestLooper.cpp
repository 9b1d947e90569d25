#include "TestLooper.h"

#include <gtest/gtest.h>

#include "AppDefs.h"

void LooperLog::Add(uint32 what) {
    std::lock_guard lock(mutex_);
    whats_.push_back(what);
    changed_.notify_all();
}

void LooperLog::SetDeleted() {
    std::lock_guard lock(mutex_);
    isDeleted_ = true;
    changed_.notify_all();
}

void LooperLog::AwaitCount(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return whats_.size() >= count; });
}

void LooperLog::AwaitDeletion() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return isDeleted_; });
}

std::vector<uint32> LooperLog::Whats() const {
    std::lock_guard lock(mutex_);
    return whats_;
}

bool LooperLog::IsDeleted() const {
    std::lock_guard lock(mutex_);
    return isDeleted_;
}

TestLooper::~TestLooper() {
    delete_sem(isHeld_);
    delete_sem(mayGoOn_);
    log_->SetDeleted();
}

void TestLooper::MessageReceived(BMessage* message) {
    if (message->what == kHold) {
        release_sem(isHeld_);
        acquire_sem(mayGoOn_);
        return;
    }
    log_->Add(message->what);
    if (action_) action_(message);
}

bool TestLooper::QuitRequested() {
    log_->Add(B_QUIT_REQUESTED);
    return quitAnswer_;
}

void TestLooper::Hold() {
    ASSERT_EQ(PostMessage(kHold), B_OK);
    acquire_sem(isHeld_);
}

void QuitFromHere(BLooper* looper) {
    ASSERT_TRUE(looper->Lock());
    looper->Quit();
}
