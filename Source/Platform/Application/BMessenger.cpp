#include "Platform/Application/BMessenger.h"

#include <unistd.h>

#include <memory>

#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/LooperRegistry.h"

namespace {

LooperRef LinkOf(int32 team, int32 port) {
    return team == getpid() ? LooperRegistry::Find(port) : nullptr;
}

}  // namespace

BMessenger::BMessenger(const BHandler* handler, const BLooper* looper, status_t* result) {
    const status_t status = SetTo(handler, looper);
    if (result != nullptr) *result = status;
}

status_t BMessenger::SetTo(const BHandler* handler, const BLooper* looper) {
    if (handler != nullptr) {
        const BLooper* const own = handler->Looper();
        if (own == nullptr || (looper != nullptr && looper != own)) return B_MISMATCHED_VALUES;
        looper = own;
    }
    const LooperRef link = LooperRegistry::Find(looper);
    if (link == nullptr) return B_BAD_VALUE;
    port_ = link->portNumber;
    handler_ = handler == nullptr ? Delivery::kPreferredHandler : handler->Token();
    team_ = getpid();
    return B_OK;
}

bool BMessenger::IsValid() const {
    const LooperRef link = LinkOf(team_, port_);
    return link != nullptr && !link->port.IsClosed();
}

BHandler* BMessenger::LockedTarget() const {
    const LooperRef link = LinkOf(team_, port_);
    if (link == nullptr || !link->lock.IsLocked()) return nullptr;
    return link->looper->HandlerOf(handler_);
}

status_t BMessenger::SendMessage(uint32 what) const {
    const BMessage message(what);
    return SendMessage(&message);
}

status_t BMessenger::SendMessage(const BMessage* message, bigtime_t timeout) const {
    if (message == nullptr) return B_BAD_VALUE;
    const LooperRef link = LinkOf(team_, port_);
    if (link == nullptr) return B_BAD_PORT_ID;
    return link->port.Put(std::make_unique<Delivery>(*message, handler_), timeout);
}

status_t BMessenger::SendMessage(const BMessage* message, BMessage* reply,
                                 bigtime_t deliveryTimeout, bigtime_t replyTimeout) const {
    if (message == nullptr || reply == nullptr) return B_BAD_VALUE;
    const LooperRef link = LinkOf(team_, port_);
    if (link == nullptr) return B_BAD_PORT_ID;
    const auto slot = std::make_shared<ReplySlot>();
    const status_t status =
        link->port.Put(std::make_unique<Delivery>(*message, handler_, slot), deliveryTimeout);
    return status == B_OK ? slot->Wait(reply, replyTimeout) : status;
}

bool BMessenger::operator==(const BMessenger& other) const {
    return port_ == other.port_ && handler_ == other.handler_;
}
