#include "ReceivedMessages.h"

#include <algorithm>

void ReceivedMessages::Note(const BMessage& message) {
    const std::lock_guard lock(mutex_);
    received_.push_back(message);
    arrived_.notify_all();
}

BMessage ReceivedMessages::WaitFor(uint32 what) {
    std::unique_lock lock(mutex_);
    for (;;) {
        const auto found = std::ranges::find(received_, what, &BMessage::what);
        if (found != received_.end()) {
            BMessage message = *found;
            received_.erase(received_.begin(), found + 1);
            return message;
        }
        arrived_.wait(lock);
    }
}

bool ReceivedMessages::Has(uint32 what) {
    const std::lock_guard lock(mutex_);
    return std::ranges::find(received_, what, &BMessage::what) != received_.end();
}
