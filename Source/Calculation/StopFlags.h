// Why a run stops: so many callers have asked for a pause, or the calculator itself has. Owned
// by the calculator; any thread may set or read the flags. The force evaluation polls them, so that
// a pause takes effect in the middle of a step of many bodies.
#pragma once

#include <atomic>

#include "Platform/Support/SupportDefs.h"

struct StopFlags {
    std::atomic<int32> pauseCount{1};
    std::atomic<bool> internalPause{false};

    bool ShouldStop() const {
        return pauseCount.load(std::memory_order_acquire) != 0 ||
               internalPause.load(std::memory_order_acquire);
    }
};
