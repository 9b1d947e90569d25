// The line on a terminal that shows how far a run has come, how fast it goes and how long it will
// take. Used by the thread that owns the run.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "Platform/Support/SupportDefs.h"
#include "Run/RunGoal.h"

class ProgramResources;

class Progress {
public:
    // `secondsBefore`: of real time that the run has taken already.
    // Shows nothing unless standard error is a terminal and `wanted` holds.
    Progress(const ProgramResources& resources, bool wanted, const RunGoal& goal, double startTime,
             double timeUval, double secondsBefore);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    [[nodiscard]] bool IsShown() const { return shown_; }
    void Show(int64 steps, double time);
    // Takes the line away.
    void Clear();

private:
    [[nodiscard]] std::string Line(int64 steps, double time, double seconds) const;

    const ProgramResources& resources_;
    const bool shown_;
    const RunGoal goal_;
    const double startTime_;  // s
    const double timeUval_;   // s
    const std::chrono::steady_clock::time_point begin_;
    bool onScreen_ = false;
};
