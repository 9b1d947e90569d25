// A record on its way: its own copy, the handler it is for, and the sender that waits for an
// answer, if there is one. Owned in turn by the port, the looper, and whoever detaches it;
// destroying it unanswered answers the waiting sender with B_NO_REPLY. Used by one thread at a
// time.
#pragma once

#include <memory>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/ReplySlot.h"

class Delivery {
public:
    // Stands for the looper's preferred handler, whichever it is when the message is handled.
    static constexpr int32 kPreferredHandler = -2;

    Delivery(const BMessage& message, int32 handlerToken,
             std::shared_ptr<ReplySlot> replySlot = nullptr);
    ~Delivery();
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

    [[nodiscard]] BMessage* Message() { return &message_; }
    [[nodiscard]] int32 HandlerToken() const { return handlerToken_; }

    [[nodiscard]] bool IsSourceWaiting() const;
    // B_BAD_REPLY if the sender asked for no answer, B_DUPLICATE_REPLY if it has one,
    // B_BAD_PORT_ID if it waits no longer.
    status_t SendReply(const BMessage& reply);

private:
    BMessage message_;
    const int32 handlerToken_;
    const std::shared_ptr<ReplySlot> replySlot_;  // null: nobody waits
};
