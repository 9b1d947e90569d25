// A consumer's lock for the length of a block. Calculation thread.
#pragma once

#include "Calculation/ReportConsumer.h"

class ConsumerLock {
public:
    explicit ConsumerLock(ReportConsumer* consumer)
        : consumer_(consumer), isHeld_(consumer->LockConsumer()) {}
    ~ConsumerLock() {
        if (isHeld_) consumer_->UnlockConsumer();
    }
    ConsumerLock(const ConsumerLock&) = delete;
    ConsumerLock& operator=(const ConsumerLock&) = delete;

    [[nodiscard]] bool IsHeld() const { return isHeld_; }

private:
    ReportConsumer* const consumer_;
    const bool isHeld_;
};
