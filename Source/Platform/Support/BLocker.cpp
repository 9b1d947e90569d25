#include "Platform/Support/BLocker.h"

BLocker::BLocker(const char* name) : name_(name) {}

bool BLocker::Lock() {
    return LockWithTimeout(B_INFINITE_TIMEOUT) == B_OK;
}

status_t BLocker::LockWithTimeout(bigtime_t microseconds) {
    if (!IsLocked()) {
        const status_t status = free_.Acquire(1, microseconds);
        if (status != B_OK) return status;
        owner_ = find_thread(nullptr);
    }
    depth_++;
    return B_OK;
}

void BLocker::Unlock() {
    if (!IsLocked()) debugger("Unlock() of a BLocker that this thread does not hold.");
    if (--depth_ > 0) return;
    owner_ = -1;
    free_.Release(1);
}
