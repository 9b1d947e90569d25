// Makes the epochs of a document's record: the tree as it is stored now, or the flat list of the
// earlier layout, in which every epoch names the one beneath which it hangs. No state, any thread.
#pragma once

#include <memory>
#include <vector>

#include "Simulation/Document/DocumentError.h"
#include "Simulation/Document/DocumentNotice.h"

class AbEpoch;
class BMessage;

// Of a document's record: that of each top-level epoch.
inline constexpr const char* kEpochsField = "Epochs";

// The top-level epochs in order, each with its descendants. An entry that is no epoch is left out;
// a flat one that hangs beneath nothing, or beneath itself, becomes a top-level epoch. An epoch
// that cannot be used stays in its place, but without its systems; where none can, the document is
// refused. Systems without an identifier get new ones. `notices` tells of all that.
DocumentError ReadEpochs(const BMessage& record, std::vector<std::unique_ptr<AbEpoch>>* topLevel,
                         DocumentNotices* notices);
