// What was edited on the ways to two epochs since these parted, in words. No state.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

class AbEpoch;
class CompareMenu;
class EpochPortal;
struct DisplayContext;

struct ComparedEpoch {
    const AbEpoch* epoch;
    std::string name;
};

// What branches were before anybody edited them: the moments of the runs that they began in.
using BranchStarts = std::unordered_map<const AbEpoch*, std::shared_ptr<const AbEpoch>>;

// One edit a line. What a run changes is no edit. The caller holds the model's
// read lock.
[[nodiscard]] std::string DescribeDifferences(const ComparedEpoch& one, const ComparedEpoch& other,
                                              const BranchStarts& starts,
                                              const DisplayContext& context);
