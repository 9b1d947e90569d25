// The line on a terminal that shows how many runs of a sweep are done, and how long the others will
// take. Used by the sweep's thread.
#pragma once

#include <chrono>
#include <string>

#include "Platform/Support/SupportDefs.h"

class ProgramResources;

class SweepProgress {
public:
    // Shows nothing unless `wanted` holds. So many runs were `kept` from before.
    SweepProgress(const ProgramResources& resources, bool wanted, int64 kept, int64 runs);
    ~SweepProgress();
    SweepProgress(const SweepProgress&) = delete;
    SweepProgress& operator=(const SweepProgress&) = delete;

    // Says how many were kept.
    void TellKept() const;
    void AddOne() { done_++; }
    void Show();

private:
    const ProgramResources& resources_;
    const bool wanted_;
    const bool isLineShown_;  // standard error is a terminal
    const int64 kept_;
    const int64 runs_;
    int64 done_ = 0;
    bool onScreen_ = false;
    const std::chrono::steady_clock::time_point begin_;
};
