// The messages that a looper of a test was sent, noted by its thread and waited for by the test's.
#pragma once

#include <condition_variable>
#include <mutex>
#include <vector>

#include "BMessage.h"

class ReceivedMessages {
public:
    void Note(const BMessage& message);
    // Waits for one with this code, and forgets all up to it.
    BMessage WaitFor(uint32 what);
    // Is one noted that was not waited for?
    bool Has(uint32 what);

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<BMessage> received_;
};
