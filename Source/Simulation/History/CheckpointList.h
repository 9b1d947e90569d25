// The checkpoints of one run: at every so many reports, and those that are pinned. When they are
// too many the distance doubles. A plain value, guarded by its owner.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Simulation/History/RunCheckpoint.h"

class CheckpointList {
public:
    // Of these bodies: what a second calculator makes from one to the next takes a moment.
    CheckpointList(std::size_t bodies, std::size_t massive, bool isBackwards);

    // Reports from the one at that number to the next one that is to be kept.
    [[nodiscard]] int64 ReportsToNext(int64 report) const { return spacing_ - report % spacing_; }
    [[nodiscard]] bool IsDue(int64 report) const { return report % spacing_ == 0; }
    void Add(RunCheckpoint checkpoint);
    // False: there is none that can be spared. Needs no memory.
    bool Thin();
    void ThinTo(std::size_t most);

    // The last one before the run came to that time, or the first one of all; null if there is
    // none.
    [[nodiscard]] std::shared_ptr<const RunCheckpoint> Before(double time) const;
    [[nodiscard]] std::size_t Count() const { return list_.size(); }
    // In the order in which the run came to them.
    [[nodiscard]] const std::vector<std::shared_ptr<const RunCheckpoint>>& All() const {
        return list_;
    }
    [[nodiscard]] std::size_t Bytes() const { return bytes_; }

private:
    int64 spacing_;  // reports
    bool isBackwards_;
    std::size_t bytes_ = 0;
    std::vector<std::shared_ptr<const RunCheckpoint>> list_;
};
