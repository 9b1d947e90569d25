// The bounded mailbox of one looper: any thread puts messages in, the looper's thread takes them
// out all at once, so the capacity counts while a message is being handled and before the looper
// runs.
#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

#include "Platform/Application/Delivery.h"

class MessagePort {
public:
    using Messages = std::deque<std::unique_ptr<Delivery>>;

    explicit MessagePort(int32 capacity) : capacity_(static_cast<std::size_t>(capacity)) {}
    MessagePort(const MessagePort&) = delete;
    MessagePort& operator=(const MessagePort&) = delete;

    // Waits for room. B_TIMED_OUT, B_WOULD_BLOCK (timeout 0), B_BAD_PORT_ID once closed; the
    // message is destroyed then.
    [[nodiscard]] status_t Put(std::unique_ptr<Delivery> message, bigtime_t timeout);
    // Puts an empty pointer, the order to quit, behind the messages that are waiting; there is
    // always room for it.
    void PutQuit();
    // Moves all messages to the end of the queue; waits for one if the queue is empty.
    void TakeAll(Messages* queue);
    // Destroys the messages, refuses new ones, and wakes the senders that wait for room.
    void Close();
    [[nodiscard]] bool IsClosed() const;

private:
    const std::size_t capacity_;
    mutable std::mutex mutex_;
    std::condition_variable hasRoom_;
    std::condition_variable hasMessage_;
    Messages messages_;
    bool isClosed_ = false;
};
