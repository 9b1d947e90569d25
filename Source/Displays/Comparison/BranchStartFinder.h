// Computes what branches began with, to the bit, on a thread of its own: the moments of kept runs
// that they begin in. Made, asked and destroyed by one thread, which holds no lock of the document.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>

#include "Displays/Comparison/EpochDifferences.h"
#include "Simulation/History/RunHistory.h"

class BranchStartFinder {
public:
    // By branch: the run that it begins in, up to there.
    using Ways = std::unordered_map<const AbEpoch*, RunHistory::Way>;
    // On the finder's thread, when all are found that can be.
    using Done = std::function<void()>;

    // None is owned.
    BranchStartFinder(EpochPortal* portal, const RunHistory* history, Ways ways, Done done);
    // Gives up what is not found yet.
    ~BranchStartFinder();
    BranchStartFinder(const BranchStartFinder&) = delete;
    BranchStartFinder& operator=(const BranchStartFinder&) = delete;

    // Nothing: it is not done yet.
    [[nodiscard]] std::optional<BranchStarts> Found() const;

private:
    void Work();

    EpochPortal* const portal_;
    const RunHistory* const history_;
    const Ways ways_;
    const Done done_;
    std::atomic<bool> isEnding_{false};
    mutable std::mutex mutex_;  // guards the next one
    std::optional<BranchStarts> found_;
    std::thread thread_;  // last: it uses the above
};
