// Knows how many steps the runs have taken, and hands over its state when somebody asks for it.
// Taken into the calculator's list of consumers by the simulation's window; it needs no thread of
// its own, so the calculation never waits for it. Steps, Time, Want and Take: any thread.
#pragma once

#include <atomic>
#include <mutex>
#include <vector>

#include "Calculation/ReportConsumer.h"
#include "Simulation/Document/SystemState.h"

class Calculator;
class EpochPortal;

class RunMeter final : public ReportConsumer {
public:
    // Neither is owned.
    RunMeter(EpochPortal* portal, Calculator* calculator);

    // Of the calculator, until the last report.
    [[nodiscard]] int64 Steps() const { return steps_; }
    [[nodiscard]] double Time() const { return time_; }  // s, of the last report
    // s, between two reports since Forget; infinite: none was seen. A run begins with steps that
    // are shorter than they need be, which do not count.
    [[nodiscard]] double ShortestStep() const { return shortestStep_; }
    // The next batch's last state is to be kept, and none from before.
    void Want();
    // None is to be kept, and no step was seen.
    void Forget();
    // True, once, when it is there: masses, positions, velocities and the time, without names.
    [[nodiscard]] bool Take(SystemState* state);

    void PrepareForGo(int32 reportsPerDraw) override;
    void ReadData(int32 count, double* times, double* positions, double* velocities) override;
    void ReadOk() override;

private:
    void FindShortestStep(int32 count, const double* times);

    EpochPortal* const portal_;
    Calculator* const calculator_;
    std::atomic<int64> steps_{0};
    std::atomic<double> time_{0.0};
    std::atomic<double> shortestStep_;
    std::atomic<bool> isWanted_{false};
    int64 reportsSinceGo_ = 0;  // calculation thread, as the next one
    double lastTime_ = 0.0;     // s
    std::vector<double> gm_;    // m3/s2, calculation thread
    std::mutex mutex_;
    SystemState state_;
    bool hasState_ = false;
};
