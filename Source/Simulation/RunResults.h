// What there was to tell of each run at its end, so that it can be told again where the run's epoch
// comes back. Owned by the simulation's window, on its thread.
//
// A result belongs to its epoch as long as that lives: an undone Go takes it along.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "Simulation/RunMonitor.h"

class AbEpoch;

struct RunResult {
    RunMonitor::Figures figures;
    std::string event;  // what happened last in it, in words; may be empty
};

class RunResults {
public:
    // With the portal's read lock. Of an epoch that is none there is nothing to keep, and null.
    [[nodiscard]] RunResult* Keep(const AbEpoch* epoch);
    // Null: nothing is known of a run there.
    [[nodiscard]] const RunResult* Find(const AbEpoch* epoch) const;

private:
    struct Entry {
        std::weak_ptr<const void> life;  // of the epoch
        RunResult result;
    };
    std::unordered_map<const AbEpoch*, Entry> entries_;
};
