#include "Calculation/PaceClock.h"

#include <chrono>

#include "Platform/Kernel/OS.h"

bigtime_t SystemPaceClock::Now() const {
    return system_time();
}

void SystemPaceClock::WaitUntil(bigtime_t moment, const std::function<bool()>& isOver) {
    std::unique_lock lock(mutex_);
    for (bigtime_t left = moment - Now(); left > 0 && !isOver(); left = moment - Now())
        woken_.wait_for(lock, std::chrono::microseconds(left));
}

// Under the lock, so that a thread that has just looked is waiting by then.
void SystemPaceClock::Wake() {
    const std::lock_guard lock(mutex_);
    woken_.notify_all();
}
