// Makes runs of a document again that are not kept, or not whole, on a thread of its own: one after
// another, as they are wanted. Any thread may ask; none may hold a lock of the document.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "Simulation/History/RunHistory.h"

class EpochPortal;

class RunRemaker {
public:
    // On the remaker's thread. kFound: the history has the run; kNotKept: the epoch that it began
    // from is gone.
    using Made = std::function<void(const AbEpoch* run, RunHistory::Finding)>;
    // Likewise, now and then while it takes long.
    using Waits = std::function<void()>;

    // Neither portal nor history is owned. `joiner` stands between the names of bodies that merge.
    RunRemaker(EpochPortal* portal, RunHistory* history, std::string joiner, Made made,
               Waits waits);
    ~RunRemaker();
    RunRemaker(const RunRemaker&) = delete;
    RunRemaker& operator=(const RunRemaker&) = delete;

    // Instead of another one that is being made.
    void Want(const AbEpoch* run);
    void WantNothing();
    // Of the run that is being made: the part that is done.
    [[nodiscard]] std::optional<double> Progress() const;

private:
    void Work();
    [[nodiscard]] RunHistory::Finding Make(const AbEpoch* run);
    [[nodiscard]] bool IsWanted(const AbEpoch* run) const;

    EpochPortal* const portal_;
    RunHistory* const history_;
    const std::string joiner_;
    const Made made_;
    const Waits waits_;
    std::atomic<double> progress_{-1.0};
    mutable std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    const AbEpoch* wanted_ = nullptr;  // only compared, unless the tree has it
    bool isEnding_ = false;
    std::thread thread_;  // last: it uses the above
};
