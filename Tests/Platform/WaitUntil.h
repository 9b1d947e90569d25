// Waits for what nobody tells of, and gives up after a while: a test that fails must also end.
#pragma once

#include "Platform/Kernel/OS.h"

template <typename Condition>
[[nodiscard]] bool WaitUntil(Condition isTrue) {
    constexpr bigtime_t kPatience = 60'000'000;
    constexpr bigtime_t kLook = 2000;
    for (const bigtime_t end = system_time() + kPatience; !isTrue(); snooze(kLook))
        if (system_time() > end) return false;
    return true;
}
