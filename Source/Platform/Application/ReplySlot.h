// The place where a sender that waits for an answer gets it. Shared by the sender and the message
// on its way; any thread may call.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>

#include "Platform/Application/BMessage.h"

class ReplySlot {
public:
    // Sender: waits for the answer. B_TIMED_OUT, or B_WOULD_BLOCK for a timeout of 0; after that
    // an answer is refused.
    [[nodiscard]] status_t Wait(BMessage* reply, bigtime_t timeout);
    // Receiver: B_DUPLICATE_REPLY if there was an answer, B_BAD_PORT_ID if the sender gave up.
    [[nodiscard]] status_t Put(const BMessage& reply);
    [[nodiscard]] bool IsAwaited() const;

private:
    mutable std::mutex mutex_;
    std::condition_variable answered_;
    std::optional<BMessage> reply_;
    bool hasGivenUp_ = false;
};
