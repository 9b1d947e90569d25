// A second calculator with bodies of its own, which calculates beside the document's. Used by one
// thread, which waits while it runs.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/Observer.h"

class ReportConsumer;
class Calculator;

class SideRun final : private Observer {
public:
    // Of that epoch.
    explicit SideRun(std::unique_ptr<Epoch> epoch);
    ~SideRun() override;
    SideRun(const SideRun&) = delete;
    SideRun& operator=(const SideRun&) = delete;

    [[nodiscard]] Epoch* GetEpoch() { return epoch_.get(); }
    [[nodiscard]] EpochPortal* Portal() { return &portal_; }
    [[nodiscard]] Calculator* GetCalculator() { return calculator_.get(); }
    // Not owned. Before it runs.
    void AddConsumer(ReportConsumer* consumer) { consumers_.push_back(consumer); }

    // As Go does: the saved state, the direction, the centre of mass. Before it runs.
    void Prepare(bool isBackwards);
    // Runs until the calculator has parked by itself; a run that is `held` goes on. Now and then
    // asks whether to go on; false: the caller wants no more of it.
    bool Run(bool isHeld, const std::function<bool()>& goesOn);
    [[nodiscard]] double Time();  // s

private:
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

    const std::unique_ptr<Epoch> epoch_;
    UndoChain undoChain_;
    EpochPortal portal_;
    std::vector<ReportConsumer*> consumers_;
    std::mutex mutex_;
    std::condition_variable parking_;
    bool hasParked_ = false;
    std::unique_ptr<Calculator> calculator_;  // last: it uses the above
};
