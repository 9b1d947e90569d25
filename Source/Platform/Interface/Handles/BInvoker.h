// Something that sends a message when it is used: the message, and whom it goes to. Owned by the
// control or menu item that it is part of; the window's lock guards it.
#pragma once

#include <memory>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"

class BHandler;
class BLooper;

class BInvoker {
public:
    BInvoker() = default;
    explicit BInvoker(BMessage* message) : message_(message) {}
    virtual ~BInvoker() = default;
    BInvoker(const BInvoker&) = delete;
    BInvoker& operator=(const BInvoker&) = delete;

    // Takes the message over; null: nothing is sent any more.
    virtual status_t SetMessage(BMessage* message);
    [[nodiscard]] BMessage* Message() const { return message_.get(); }
    // 0 for no message.
    [[nodiscard]] uint32 Command() const { return message_ == nullptr ? 0 : message_->what; }

    virtual status_t SetTarget(BMessenger target);
    // The statuses of BMessenger's constructor.
    status_t SetTarget(const BHandler* handler, const BLooper* looper = nullptr);
    [[nodiscard]] const BMessenger& Messenger() const { return target_; }
    // False until a target was set.
    [[nodiscard]] bool HasTarget() const { return hasTarget_; }

    // Sends a copy of `message` (null: of its own) and does not wait; a full port loses nothing.
    // B_BAD_VALUE: no message; B_BAD_PORT_ID: no target.
    virtual status_t Invoke(const BMessage* message = nullptr);

protected:
    // Where the message goes while no target is set; here: nowhere.
    [[nodiscard]] virtual BMessenger DefaultTarget() const { return {}; }

private:
    std::unique_ptr<BMessage> message_;
    BMessenger target_;
    bool hasTarget_ = false;
};
