// A second calculator on a private copy of the bodies, which makes the reports of a kept run again.
// Used by one thread, which waits while another calculates.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/Observer.h"
#include "Simulation/History/RunCheckpoint.h"
#include "Simulation/History/RunHistory.h"

class Calculator;

class RunReplay final : private Observer {
public:
    explicit RunReplay(const RunCheckpoint& from);
    ~RunReplay() override;
    RunReplay(const RunReplay&) = delete;
    RunReplay& operator=(const RunReplay&) = delete;

    // To the first report at or past that time, through the mergers among the events. Once. Of the
    // checkpoint it makes what a run can be begun from, and not where it lies in the run.
    [[nodiscard]] RunHistory::Finding RunTo(double time, const std::vector<RunEvent>& events,
                                            const RunHistory::Progress& progress,
                                            RunCheckpoint* moment);

private:
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

    void CopyBodies();
    // Until the calculator has parked by itself; false: the caller wants no more of it.
    bool Run(double until, const RunHistory::Progress& progress);
    bool Merge(const std::vector<RunEvent>& events);
    [[nodiscard]] RunHistory::Finding Take(RunCheckpoint* moment);
    // At that time or past it, on the way that the run goes.
    [[nodiscard]] bool IsThere(double time);
    [[nodiscard]] double Time();

    const RunCheckpoint& from_;
    Epoch epoch_;
    UndoChain undoChain_;
    EpochPortal portal_;
    const std::vector<ReportConsumer*> noConsumers_;
    std::mutex mutex_;
    std::condition_variable parking_;
    bool hasParked_ = false;
    std::unique_ptr<Calculator> calculator_;  // last: it uses the above
};
