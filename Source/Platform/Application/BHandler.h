// An object that receives messages through the looper it was added to. Its maker owns it. The
// looper calls it on the looper's thread with the looper locked; every other thread must hold that
// lock, except for Looper, LockLooper, UnlockLooper, and being named as the target of a message.
#pragma once

#include <atomic>
#include <string>

#include "Platform/Kernel/OS.h"
#include "Platform/Support/BArchivable.h"

class BLooper;
class BMessage;

class BHandler : public BArchivable {
public:
    explicit BHandler(const char* name = nullptr);
    explicit BHandler(BMessage* archive);
    // Leaves its looper, which it locks for that.
    ~BHandler() override;
    BHandler(const BHandler&) = delete;
    BHandler& operator=(const BHandler&) = delete;

    // Adds string "_name" if there is a name.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;

    // Here: hands the message to the next handler; at the end of the chain nothing happens.
    virtual void MessageReceived(BMessage* message);

    [[nodiscard]] const std::string& Name() const { return name_; }
    void SetName(const char* name);

    // Null while it belongs to none.
    [[nodiscard]] BLooper* Looper() const { return looper_; }
    // False if the handler belongs to no looper or was moved to another one meanwhile.
    bool LockLooper();
    // The same with the statuses of BLooper::LockWithTimeout; B_MISMATCHED_VALUES if it was moved.
    [[nodiscard]] status_t LockLooperWithTimeout(bigtime_t microseconds);
    void UnlockLooper();

    // Handler and next handler must belong to the same looper. A handler gets its looper as the
    // next one when it is added.
    void SetNextHandler(BHandler* next);

    // Names the handler in messages and messengers; never used twice.
    [[nodiscard]] int32 Token() const { return token_; }

private:
    friend class BLooper;

    std::string name_;
    const int32 token_;
    std::atomic<BLooper*> looper_{nullptr};
    BHandler* next_ = nullptr;
};
