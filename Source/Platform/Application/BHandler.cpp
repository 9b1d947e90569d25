#include "Platform/Application/BHandler.h"

#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kNameField = "_name";

int32 NewToken() {
    static std::atomic<int32> last{0};
    return ++last;
}

}  // namespace

BHandler::BHandler(const char* name) : name_(name == nullptr ? "" : name), token_(NewToken()) {}

BHandler::BHandler(BMessage* archive) : BArchivable(archive), token_(NewToken()) {
    if (archive != nullptr) archive->FindString(kNameField, &name_);
}

BHandler::~BHandler() {
    if (!LockLooper()) return;
    BLooper* const looper = Looper();
    looper->RemoveHandler(this);
    looper->Unlock();
}

status_t BHandler::Archive(BMessage* into, bool deep) const {
    const status_t status = BArchivable::Archive(into, deep);
    return status != B_OK || name_.empty() ? status : into->AddString(kNameField, name_);
}

void BHandler::MessageReceived(BMessage* message) {
    if (next_ != nullptr) next_->MessageReceived(message);
}

void BHandler::SetName(const char* name) {
    name_ = name == nullptr ? "" : name;
}

bool BHandler::LockLooper() {
    return LockLooperWithTimeout(B_INFINITE_TIMEOUT) == B_OK;
}

status_t BHandler::LockLooperWithTimeout(bigtime_t microseconds) {
    BLooper* const looper = Looper();
    const status_t status = BLooper::LockIfAlive(looper, microseconds);
    if (status != B_OK || looper == Looper()) return status;
    looper->Unlock();
    return B_MISMATCHED_VALUES;
}

void BHandler::UnlockLooper() {
    Looper()->Unlock();
}

void BHandler::SetNextHandler(BHandler* next) {
    BLooper* const looper = Looper();
    if (looper == nullptr || !looper->IsLocked())
        debugger("SetNextHandler() on a handler whose looper is not locked.");
    if (next != nullptr && next->Looper() != looper)
        debugger("SetNextHandler() with a handler of another looper.");
    next_ = next;
}
