// Sends a message again and again, at a steady interval, until it is destroyed. Made and destroyed
// by one thread, which may be any; a thread of its own sends. Where the target's port is full the
// message of that turn is left out.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Support/SupportDefs.h"

class BMessageRunner {
public:
    // The first message comes after the first interval, in microseconds.
    BMessageRunner(const BMessenger& target, const BMessage& message, bigtime_t interval);
    ~BMessageRunner();
    BMessageRunner(const BMessageRunner&) = delete;
    BMessageRunner& operator=(const BMessageRunner&) = delete;

private:
    void Run(bigtime_t interval);

    const BMessenger target_;
    const BMessage message_;
    std::mutex mutex_;
    std::condition_variable ends_;
    bool isEnding_ = false;
    std::thread thread_;
};
