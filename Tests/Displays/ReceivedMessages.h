// The messages that a looper of a test was sent, noted by its thread and waited for by the test's.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "Platform/Application/BMessage.h"

class ReceivedMessages {
public:
    void Note(const BMessage& message) {
        const std::lock_guard lock(mutex_);
        received_.push_back(message);
        arrived_.notify_all();
    }

    // Waits for one with this code, and forgets all up to it. An empty one and a failure if none
    // comes: a test that fails must also end.
    BMessage WaitFor(uint32 what) {
        constexpr std::chrono::seconds kPatience{60};
        std::unique_lock lock(mutex_);
        if (!arrived_.wait_for(lock, kPatience, [&] { return Find(what) != received_.end(); })) {
            ADD_FAILURE() << "no message " << what;
            return {};
        }
        const auto found = Find(what);
        BMessage message = *found;
        received_.erase(received_.begin(), found + 1);
        return message;
    }

    // Is one noted that was not waited for?
    bool Has(uint32 what) {
        const std::lock_guard lock(mutex_);
        return Find(what) != received_.end();
    }

private:
    std::vector<BMessage>::iterator Find(uint32 what) {
        return std::ranges::find(received_, what, &BMessage::what);
    }

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<BMessage> received_;
};
