// The kept runs of a document as one record, which is saved with it. No state.
#pragma once

#include <cstddef>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldDescription.h"

class EpochPortal;
class RunHistory;

class SavedHistory {
public:
    // Of the stored record.
    static constexpr std::size_t kMaxBytes = 64'000'000;

    // What is kept of the epochs in the tree, the oldest of it coarser or left out where all is too
    // much. Empty: nothing is, or there is no memory for it. Takes the portal's read lock.
    [[nodiscard]] static BMessage Of(EpochPortal* portal, const RunHistory& history,
                                     std::size_t most = kMaxBytes);
    // Gives the history those runs that lead from one epoch of the tree to another, and tells it
    // which epochs begin in them. What is damaged counts as missing. Takes the portal's read lock.
    static void Read(const BMessage& record, EpochPortal* portal, RunHistory* history);

    static void DescribeFields(FieldDescriptions* into);
    static void DescribeBranch(FieldDescriptions* into);
};
