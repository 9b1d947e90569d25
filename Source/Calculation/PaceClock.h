// The time by which pictures are shown, and how to wait for it. Tests have clocks of their own.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

#include "Platform/Support/SupportDefs.h"

class PaceClock {
public:
    virtual ~PaceClock() = default;

    [[nodiscard]] virtual bigtime_t Now() const = 0;  // us
    // Returns at that moment, or as soon as `isOver` says so. Whoever changes what it looks at
    // wakes the clock afterwards.
    virtual void WaitUntil(bigtime_t moment, const std::function<bool()>& isOver) = 0;
    // Any thread.
    virtual void Wake() = 0;

protected:
    PaceClock() = default;
    PaceClock(const PaceClock&) = default;
    PaceClock& operator=(const PaceClock&) = default;
};

class SystemPaceClock final : public PaceClock {
public:
    [[nodiscard]] bigtime_t Now() const override;
    void WaitUntil(bigtime_t moment, const std::function<bool()>& isOver) override;
    void Wake() override;

private:
    std::mutex mutex_;
    std::condition_variable woken_;
};
