// A recursive mutex that knows its owner. Any thread may call; each Lock needs one Unlock. Threads
// get it in the order in which they asked for it.
#pragma once

#include <atomic>
#include <string>

#include "Platform/Kernel/OS.h"
#include "Platform/Kernel/Semaphore.h"

class BLocker {
public:
    explicit BLocker(const char* name = "some BLocker");
    BLocker(const BLocker&) = delete;
    BLocker& operator=(const BLocker&) = delete;

    // False only after Close.
    bool Lock();
    // B_OK, B_TIMED_OUT, B_WOULD_BLOCK for a timeout of 0, or B_BAD_SEM_ID after Close.
    [[nodiscard]] status_t LockWithTimeout(bigtime_t microseconds);
    // A programming error on a thread that does not hold the lock.
    void Unlock();
    // What the lock guarded is gone: refuses everybody but its holder, and wakes those who wait.
    void Close() { free_.Close(); }

    // True when the calling thread holds the lock.
    [[nodiscard]] bool IsLocked() const { return owner_ == find_thread(nullptr); }
    // The thread that holds it, -1 for none.
    [[nodiscard]] thread_id LockingThread() const { return owner_; }
    [[nodiscard]] const std::string& Name() const { return name_; }

private:
    const std::string name_;
    Semaphore free_{1};
    std::atomic<thread_id> owner_{-1};
    std::atomic<int32> depth_{0};  // changed by the owner only
};
