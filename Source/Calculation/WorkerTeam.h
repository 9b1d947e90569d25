// A few helper threads that share one piece of work with the thread that calls Run. Owned by a
// ForceEvaluator and used by one thread at a time. Between two calls the helpers look for new work
// for some tenths of a millisecond, because a run evaluates forces thousands of times in a second,
// and then sleep.
//
// A helper that has not joined when the caller is done is shut out and not waited for: on a busy
// machine, or when helpers sleep, the caller simply does more of the work itself.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class WorkerTeam {
public:
    // Fewer helpers, when the system does not grant so many threads.
    explicit WorkerTeam(int32 helpers);
    ~WorkerTeam();
    WorkerTeam(const WorkerTeam&) = delete;
    WorkerTeam& operator=(const WorkerTeam&) = delete;

    // Calls work(argument) on the calling thread and on the helpers that come in time; returns when
    // all of them have returned. The work must take its portions from a shared counter, and end at
    // once when none is left: a helper may even come twice.
    using Work = void (*)(void* argument);
    void Run(Work work, void* argument);

private:
    void Help();
    bool Join();
    void Leave();

    // While Run is open to helpers: kOpen; plus the number of helpers that are in it.
    static constexpr uint32 kOpen = 1u << 31;
    std::atomic<uint32> members_{0};
    std::atomic<uint32> round_{0};  // counts the calls of Run, to wake the helpers
    std::atomic<bool> quit_{false};
    // Written before Run opens and read by its members only.
    Work work_ = nullptr;
    void* argument_ = nullptr;
    std::vector<std::thread> helpers_;
};
