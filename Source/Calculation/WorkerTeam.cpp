#include "Calculation/WorkerTeam.h"

#include <system_error>

namespace {

// Looks before sleeping: some tenths of a millisecond, which is longer than others need for the
// last portion of a large piece, or the caller for what it does alone. A thread that sleeps is
// too late for the next piece where the machine is busy.
constexpr int32 kLooks = 10000;

void Pause() {
#if defined(__x86_64__)
    __builtin_ia32_pause();
#endif
}

// The first value that differs from `old`.
uint32 AwaitChange(const std::atomic<uint32>& value, uint32 old) {
    for (int32 look = 0; look < kLooks; look++) {
        const uint32 now = value.load(std::memory_order_acquire);
        if (now != old) return now;
        Pause();
    }
    value.wait(old);
    return value.load();
}

}  // namespace

WorkerTeam::WorkerTeam(int32 helpers) {
    try {
        for (int32 i = 0; i < helpers; i++)
            helpers_.emplace_back(&WorkerTeam::Help, this);
    } catch (const std::system_error&) {
        // The results are the same with those that there are.
    }
}

WorkerTeam::~WorkerTeam() {
    quit_ = true;
    round_++;
    round_.notify_all();
    for (std::thread& helper : helpers_)
        helper.join();
}

void WorkerTeam::Run(Work work, void* argument) {
    work_ = work;
    argument_ = argument;
    members_ = kOpen;
    round_++;
    round_.notify_all();
    work(argument);
    uint32 members = members_.fetch_and(~kOpen) & ~kOpen;
    while (members != 0)
        members = AwaitChange(members_, members);
}

void WorkerTeam::Help() {
    uint32 round = 0;
    while (true) {
        round = AwaitChange(round_, round);
        if (quit_) return;
        if (Join()) {
            work_(argument_);
            Leave();
        }
    }
}

bool WorkerTeam::Join() {
    uint32 members = members_;
    while (members & kOpen)
        if (members_.compare_exchange_weak(members, members + 1)) return true;
    return false;
}

void WorkerTeam::Leave() {
    members_--;
    members_.notify_one();
}
