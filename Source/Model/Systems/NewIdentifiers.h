// Hands out identifiers that no system of an epoch tree has: those above the largest one, and when
// that end is reached, the gaps. Used under the lock of the tree, which it does not own.
#pragma once

#include <vector>

#include "Platform/Support/SupportDefs.h"

class AbEpoch;

class NewIdentifiers {
public:
    explicit NewIdentifiers(std::vector<const AbEpoch*> trees);

    [[nodiscard]] int64 Next();

private:
    void GatherUsed();

    const std::vector<const AbEpoch*> trees_;
    int64 largest_;
    int64 gap_ = -1;           // the last one that was handed out of a gap
    std::vector<int64> used_;  // sorted; only when the end has been reached
};
