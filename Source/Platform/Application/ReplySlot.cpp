#include "Platform/Application/ReplySlot.h"

#include "Platform/Kernel/Deadline.h"

status_t ReplySlot::Wait(BMessage* reply, bigtime_t timeout) {
    std::unique_lock lock(mutex_);
    const status_t status =
        Deadline(timeout).Wait(answered_, lock, [this] { return reply_.has_value(); });
    hasGivenUp_ = status != B_OK;
    if (status == B_OK) *reply = *reply_;
    return status;
}

status_t ReplySlot::Put(const BMessage& reply) {
    std::lock_guard lock(mutex_);
    if (reply_.has_value()) return B_DUPLICATE_REPLY;
    if (hasGivenUp_) return B_BAD_PORT_ID;
    reply_ = reply;
    answered_.notify_one();
    return B_OK;
}

bool ReplySlot::IsAwaited() const {
    std::lock_guard lock(mutex_);
    return !reply_.has_value() && !hasGivenUp_;
}
