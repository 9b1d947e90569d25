// Names the target of messages: a handler of a looper, or whichever handler that looper prefers. A
// plain value that owns nothing and may outlive its target. Any thread may send through it; sending
// may wait for room in the target's port, so a thread that holds the target's lock must not.
#pragma once

#include "Platform/Kernel/OS.h"
#include "Platform/Support/Errors.h"

class BHandler;
class BLooper;
class BMessage;

class BMessenger {
public:
    BMessenger() = default;
    // Only a looper: its preferred handler. `result`: B_BAD_VALUE if both are null or the looper is
    // gone, B_MISMATCHED_VALUES if the handler belongs to no looper or not to the one given.
    explicit BMessenger(const BHandler* handler, const BLooper* looper = nullptr,
                        status_t* result = nullptr);

    // True while the target's looper lives, even if the handler was removed.
    [[nodiscard]] bool IsValid() const;
    // The number of the target's mailbox, the same for all handlers of a looper; -1 for none.
    [[nodiscard]] int32 Port() const { return port_; }

    // The target itself, for a thread that holds the lock of its looper; null for any other, and
    // when it is gone.
    [[nodiscard]] BHandler* LockedTarget() const;

    // Copies the message and does not wait until it is handled. B_BAD_PORT_ID: no target;
    // B_WOULD_BLOCK or B_TIMED_OUT: the port is full.
    [[nodiscard]] status_t SendMessage(uint32 what) const;
    [[nodiscard]] status_t SendMessage(const BMessage* message,
                                       bigtime_t timeout = B_INFINITE_TIMEOUT) const;
    // Waits for the answer as well; the same statuses if it does not come in time. A message that
    // the receiver destroys unanswered gives B_OK and an answer B_NO_REPLY.
    [[nodiscard]] status_t SendMessage(const BMessage* message, BMessage* reply,
                                       bigtime_t deliveryTimeout = B_INFINITE_TIMEOUT,
                                       bigtime_t replyTimeout = B_INFINITE_TIMEOUT) const;

    // Compares port and handler.
    bool operator==(const BMessenger& other) const;

private:
    friend class BMessage;

    status_t SetTo(const BHandler* handler, const BLooper* looper);

    int32 port_ = -1;
    int32 handler_ = -1;
    int32 team_ = -1;  // this process; another number came with a record from elsewhere
};
