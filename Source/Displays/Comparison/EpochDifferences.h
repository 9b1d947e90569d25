// What was edited on the ways to two epochs since these parted, in words. No state.
#pragma once

#include <string>

class AbEpoch;
class CompareMenu;
class EpochPortal;
struct DisplayContext;

struct ComparedEpoch {
    const AbEpoch* epoch;
    std::string name;
};

// One edit a line. What a run changes is no edit. The caller holds the model's
// read lock.
[[nodiscard]] std::string DescribeDifferences(const ComparedEpoch& one, const ComparedEpoch& other,
                                              const DisplayContext& context);
