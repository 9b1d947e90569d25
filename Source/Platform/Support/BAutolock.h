// Holds a lock for as long as it lives. For the thread that makes it.
#pragma once

#include "Platform/Support/BLocker.h"

class BAutolock {
public:
    explicit BAutolock(BLocker& lock) : lock_(lock) { lock_.Lock(); }
    ~BAutolock() { lock_.Unlock(); }
    BAutolock(const BAutolock&) = delete;
    BAutolock& operator=(const BAutolock&) = delete;

private:
    BLocker& lock_;
};
