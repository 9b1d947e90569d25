#include "Platform/Application/MessagePort.h"

#include <iterator>
#include <utility>

#include "Platform/Kernel/Deadline.h"

status_t MessagePort::Put(std::unique_ptr<Delivery> message, bigtime_t timeout) {
    std::unique_lock lock(mutex_);
    const status_t status = Deadline(timeout).Wait(
        hasRoom_, lock, [this] { return isClosed_ || messages_.size() < capacity_; });
    if (isClosed_) return B_BAD_PORT_ID;
    if (status != B_OK) return status;
    messages_.push_back(std::move(message));
    hasMessage_.notify_one();
    return B_OK;
}

void MessagePort::PutQuit() {
    std::lock_guard lock(mutex_);
    if (isClosed_) return;
    messages_.push_back(nullptr);
    hasMessage_.notify_one();
}

void MessagePort::TakeAll(Messages* queue) {
    std::unique_lock lock(mutex_);
    if (queue->empty()) hasMessage_.wait(lock, [this] { return !messages_.empty(); });
    std::move(messages_.begin(), messages_.end(), std::back_inserter(*queue));
    messages_.clear();
    hasRoom_.notify_all();
}

void MessagePort::Close() {
    Messages unread;  // destroyed outside the mutex: it may answer senders
    std::lock_guard lock(mutex_);
    isClosed_ = true;
    unread.swap(messages_);
    hasRoom_.notify_all();
}

bool MessagePort::IsClosed() const {
    std::lock_guard lock(mutex_);
    return isClosed_;
}
