#include "Platform/Application/Delivery.h"

#include <utility>

#include "Platform/Application/AppDefs.h"

Delivery::Delivery(const BMessage& message, int32 handlerToken,
                   std::shared_ptr<ReplySlot> replySlot)
    : message_(message), handlerToken_(handlerToken), replySlot_(std::move(replySlot)) {}

Delivery::~Delivery() {
    if (IsSourceWaiting()) SendReply(BMessage(B_NO_REPLY));
}

bool Delivery::IsSourceWaiting() const {
    return replySlot_ != nullptr && replySlot_->IsAwaited();
}

status_t Delivery::SendReply(const BMessage& reply) {
    return replySlot_ == nullptr ? B_BAD_REPLY : replySlot_->Put(reply);
}
