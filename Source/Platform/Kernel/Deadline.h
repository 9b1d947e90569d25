// The moment at which a wait with a timeout ends. A small value, any thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "Platform/Kernel/OS.h"
#include "Platform/Support/Errors.h"

class Deadline {
public:
    // `timeout` microseconds from now; one of more than a century (so B_INFINITE_TIMEOUT) is never.
    explicit Deadline(bigtime_t timeout)
        : isNever_(timeout > kCentury), isAtOnce_(timeout <= 0), end_(Clock::now()) {
        if (!isNever_ && !isAtOnce_) end_ += std::chrono::microseconds(timeout);
    }

    // Waits, `mutex` held by `lock`, until isDone() is true: B_OK; B_TIMED_OUT if the time passes
    // before, and B_WOULD_BLOCK if there was no time to wait at all.
    template <typename IsDone>
    [[nodiscard]] status_t Wait(std::condition_variable& condition,
                                std::unique_lock<std::mutex>& lock, IsDone isDone) const {
        if (isNever_) {
            condition.wait(lock, isDone);
            return B_OK;
        }
        if (isAtOnce_) return isDone() ? B_OK : B_WOULD_BLOCK;
        return condition.wait_until(lock, end_, isDone) ? B_OK : B_TIMED_OUT;
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr bigtime_t kCentury = 100LL * 366 * 86400 * 1000000;

    bool isNever_;
    bool isAtOnce_;
    Clock::time_point end_;
};
