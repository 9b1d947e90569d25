#include "Model/Systems/NewIdentifiers.h"

#include <algorithm>
#include <utility>

#include "Model/Epochs/AbEpoch.h"

namespace {

void GatherIDs(const MassSystem& system, std::vector<int64>* ids) {
    if (system.ID() >= 0) ids->push_back(system.ID());
    for (int32 i = 0; i < system.CountChildren(); i++)
        GatherIDs(*system.ChildAt(i), ids);
}

}  // namespace

NewIdentifiers::NewIdentifiers(std::vector<const AbEpoch*> trees)
    : trees_(std::move(trees)), largest_(kNoSystemID) {
    for (const AbEpoch* tree : trees_)
        largest_ = std::max(largest_, tree->MaxSystemID());
}

int64 NewIdentifiers::Next() {
    if (largest_ < kMaxSystemID) return ++largest_;
    if (used_.empty()) GatherUsed();
    for (gap_++; std::ranges::binary_search(used_, gap_);)
        gap_++;
    return gap_;
}

void NewIdentifiers::GatherUsed() {
    std::vector<const AbEpoch*> unvisited = trees_;
    while (!unvisited.empty()) {
        const AbEpoch* const epoch = unvisited.back();
        unvisited.pop_back();
        if (const MassSystem* root = epoch->RootSystem()) GatherIDs(*root, &used_);
        for (int32 i = 0; i < epoch->CountChildren(); i++)
            unvisited.push_back(epoch->ChildAt(i));
    }
    std::ranges::sort(used_);
}
