// Holds the lock of a locker, a looper or whatever else has Lock and Unlock, for as long as it
// lives. For the thread that makes it. A looper may be gone: then IsLocked is false, and the block
// must do nothing with it.
#pragma once

template <typename Lockable>
class BAutolock {
public:
    explicit BAutolock(Lockable& lock) : lock_(lock), isLocked_(lock_.Lock()) {}
    explicit BAutolock(Lockable* lock) : BAutolock(*lock) {}
    ~BAutolock() {
        if (isLocked_) lock_.Unlock();
    }
    BAutolock(const BAutolock&) = delete;
    BAutolock& operator=(const BAutolock&) = delete;

    [[nodiscard]] bool IsLocked() const { return isLocked_; }

private:
    Lockable& lock_;
    const bool isLocked_;
};
