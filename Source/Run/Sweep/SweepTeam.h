// Threads that make the runs of a sweep, each one run after the other. Owned by the sweep, whose
// thread takes what they have done.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Support/SupportDefs.h"

class ProgramResources;
class RunEvents;
class SweepPlan;
struct Options;

class SweepTeam {
public:
    // What all runs have in common. None is owned.
    struct Work {
        const Options& options;
        const ProgramResources& resources;
        const SweepPlan& plan;
        const BMessage& record;  // of the document
    };
    // Makes the run `first` and every `stride`-th one after it. Where more than one thread cannot
    // be had, fewer do the same.
    [[nodiscard]] static int64 CountRuns(const SweepPlan& plan, int64 first, int64 stride);
    SweepTeam(const Work& work, int64 first, int64 stride, RunEvents* events);
    // Gives up what is not done.
    ~SweepTeam();
    SweepTeam(const SweepTeam&) = delete;
    SweepTeam& operator=(const SweepTeam&) = delete;

    struct Line {
        int64 run;
        std::string columns;
    };
    // Those that were done since it was last asked.
    [[nodiscard]] std::vector<Line> TakeDone();

private:
    void DoRuns(const BMessage& record);
    void Done(int64 run, std::string columns);

    const Work work_;
    const int64 stride_;
    RunEvents* const events_;
    std::atomic<int64> next_;
    std::atomic<bool> isStopped_ = false;
    std::mutex mutex_;
    std::vector<Line> done_;
    std::vector<std::thread> threads_;
};
