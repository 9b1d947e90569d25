#include "Platform/Application/BMessageRunner.h"

#include <chrono>

BMessageRunner::BMessageRunner(const BMessenger& target, const BMessage& message,
                               bigtime_t interval)
    : target_(target), message_(message), thread_([this, interval] { Run(interval); }) {}

BMessageRunner::~BMessageRunner() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    ends_.notify_one();
    thread_.join();
}

void BMessageRunner::Run(bigtime_t interval) {
    std::unique_lock lock(mutex_);
    const auto isEnding = [this] { return isEnding_; };
    while (!ends_.wait_for(lock, std::chrono::microseconds(interval), isEnding))
        static_cast<void>(target_.SendMessage(&message_, bigtime_t{0}));
}
