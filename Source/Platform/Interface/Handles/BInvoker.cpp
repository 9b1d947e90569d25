#include "Platform/Interface/Handles/BInvoker.h"

#include "Platform/Application/BHandler.h"
#include "Platform/Interface/Server/WindowServer.h"

status_t BInvoker::SetMessage(BMessage* message) {
    if (message != message_.get()) message_.reset(message);
    return B_OK;
}

status_t BInvoker::SetTarget(BMessenger target) {
    target_ = target;
    hasTarget_ = true;
    return B_OK;
}

status_t BInvoker::SetTarget(const BHandler* handler, const BLooper* looper) {
    status_t status = B_OK;
    const BMessenger target(handler, looper, &status);
    return status == B_OK ? SetTarget(target) : status;
}

status_t BInvoker::Invoke(const BMessage* message) {
    if (message == nullptr) message = message_.get();
    if (message == nullptr) return B_BAD_VALUE;
    const BMessenger target = hasTarget_ ? target_ : DefaultTarget();
    if (!target.IsValid()) return B_BAD_PORT_ID;
    WindowServer::Deliver(target, *message);
    return B_OK;
}
