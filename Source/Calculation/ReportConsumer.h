// What takes the calculator's reports: a display, or a program that writes them to a file. The
// owner of the consumers keeps the list of them and changes it only while the calculator is parked.
// Each consumer releases the calculator's "Write Ok" benaphore once when it is ready for its first
// batch and once more whenever it has finished with a batch: the calculator waits for all of them.
#pragma once

#include "Platform/Support/SupportDefs.h"

class ReportConsumer {
public:
    virtual ~ReportConsumer() = default;

    // The lock of the consumer's looper, if it is one, which the calculator holds around
    // PrepareForGo. False: the looper is gone, and the call is left out.
    virtual bool LockConsumer() { return true; }
    virtual void UnlockConsumer() {}

    // All of the following run on the calculation thread, which holds no model lock meanwhile.
    // A run begins whose batches hold about `reportsPerDraw` reports; pacing changes that number
    // during the run.
    virtual void PrepareForGo(int32 reportsPerDraw) = 0;
    // A batch of `count` reports (0 for a batch that was interrupted at once): seconds, metres and
    // metres per second; positions and velocities hold x, y and z of every body in mass order, one
    // report after the other. The arrays are the calculator's: copy what is needed.
    virtual void ReadData(int32 count, double* times, double* positions, double* velocities) = 0;
    // The batch may be worked on: wakes the consumer's own thread.
    virtual void ReadOk() = 0;

    // It only shows what it is given. At a pace (PictureBatches.h) it is handed batches that end
    // with a picture; all others are handed the reports, and of a batch that is cut for the
    // pictures ReadOk once more for each of these.
    [[nodiscard]] virtual bool TakesPictures() const { return false; }

protected:
    ReportConsumer() = default;
    ReportConsumer(const ReportConsumer&) = default;
    ReportConsumer& operator=(const ReportConsumer&) = default;
};

// A consumer's lock for the length of a block. Calculation thread.
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
