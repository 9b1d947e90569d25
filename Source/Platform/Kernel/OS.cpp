#include "Platform/Kernel/OS.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

template <typename Clock>
bigtime_t MicrosecondsOf() {
    using std::chrono::microseconds;
    return std::chrono::duration_cast<microseconds>(Clock::now().time_since_epoch()).count();
}

}  // namespace

bigtime_t real_time_clock_usecs() {
    return MicrosecondsOf<std::chrono::system_clock>();
}

bigtime_t system_time() {
    return MicrosecondsOf<std::chrono::steady_clock>();
}

status_t snooze(bigtime_t microseconds) {
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    return B_OK;
}

void debugger(const char* text) {
    std::fprintf(stderr, "%s\n", text);
    __builtin_trap();
}
