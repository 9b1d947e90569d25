// Makes the reports of a kept run again, on a private copy of the bodies. Used by one thread, which
// waits while another calculates.
#pragma once

#include <vector>

#include "Calculation/ReportConsumer.h"
#include "Simulation/History/RunCheckpoint.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/SideRun.h"

class Calculator;

class RunReplay {
public:
    explicit RunReplay(const RunCheckpoint& from);

    // To that report, through the mergers among the events. Once. Of the checkpoint it makes what a
    // run can be begun from, and not where it lies in the run.
    [[nodiscard]] RunHistory::Finding RunTo(double time, RunHistory::Which which,
                                            const std::vector<RunEvent>& events,
                                            const RunHistory::Progress& progress,
                                            RunCheckpoint* moment);

private:
    // Ends the run with its next report, when it is asked to.
    class Stepper final : public ReportConsumer {
    public:
        void Enter(Calculator* calculator);
        void StopAtNext() { isAsked_ = true; }
        void PrepareForGo(int32 reportsPerDraw) override;
        void ReadData(int32 count, double* times, double* positions, double* velocities) override;
        void ReadOk() override;

    private:
        Calculator* calculator_ = nullptr;
        bool isAsked_ = false;
    };

    // Until the calculator has parked by itself; false: the caller wants no more of it.
    bool Run(double until, const RunHistory::Progress& progress);
    bool Merge(const std::vector<RunEvent>& events);
    [[nodiscard]] RunHistory::Finding Take(RunCheckpoint* moment);
    // At that time or past it, on the way that the run goes.
    [[nodiscard]] bool IsThere(double time);

    const RunCheckpoint& from_;
    Stepper stepper_;
    SideRun side_;
};
