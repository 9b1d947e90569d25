// A counting semaphore, the one behind sem_id, BLocker and every looper's lock. Any thread may
// call. Threads are served strictly in the order of their arrival, and a released unit goes
// straight to the first of them: neither a request for many units nor a thread that meets one that
// releases and takes again at once is starved.
#pragma once

#include <condition_variable>
#include <mutex>

#include "Platform/Kernel/OS.h"
#include "Platform/Support/Errors.h"

class Semaphore {
public:
    explicit Semaphore(int32 count) : count_(count) {}
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    // Takes all `count` units at once, or none. B_TIMED_OUT, B_WOULD_BLOCK (timeout 0),
    // B_BAD_SEM_ID after Close.
    [[nodiscard]] status_t Acquire(int32 count, bigtime_t timeout);
    // B_BAD_SEM_ID after Close.
    status_t Release(int32 count);
    // Refuses everybody from now on and wakes those who wait.
    void Close();
    // The free units less those waited for.
    [[nodiscard]] int32 Count() const;

private:
    struct Waiter {
        const int32 wanted;
        bool isServed = false;
        Waiter* next = nullptr;
        std::condition_variable wake{};
    };

    void Enqueue(Waiter* waiter);
    void Dequeue(Waiter* waiter);
    void Serve();

    mutable std::mutex mutex_;
    Waiter* first_ = nullptr;  // the others follow by `next`: to wait takes no memory
    int32 count_;
    bool isClosed_ = false;
};
