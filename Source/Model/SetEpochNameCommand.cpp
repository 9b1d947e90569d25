#include "SetEpochNameCommand.h"

#include <utility>

#include "ChangeFlags.h"
#include "EpochCursor.h"
#include "EpochPortal.h"

namespace {

// Compares addresses only: the epoch may be gone.
bool IsInTree(AbEpoch* root, const AbEpoch* epoch) {
    for (EpochCursor cursor(root); cursor.GetEpoch(); cursor.Increment())
        if (cursor.GetEpoch() == epoch) return true;
    return false;
}

}  // namespace

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName)
    : portal_(portal), newName_(std::move(newName)), oldNameKnown_(false) {}

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName,
                                         std::string oldName)
    : portal_(portal),
      newName_(std::move(newName)),
      oldName_(std::move(oldName)),
      oldNameKnown_(true) {}

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName, AbEpoch* epoch)
    : portal_(portal), newName_(std::move(newName)), oldNameKnown_(false), wanted_(epoch) {}

void SetEpochNameCommand::Execute() {
    if (!epoch_) {
        if (wanted_ && !IsInTree(portal_->RootEpoch(), wanted_)) return;
        epoch_ = wanted_ ? wanted_ : portal_->FocusEpoch();
    }
    if (!oldNameKnown_) {
        oldName_ = epoch_->Name();
        oldNameKnown_ = true;
    }
    epoch_->SetName(newName_);
    portal_->TellObservers(kEpochRenamed);
}

void SetEpochNameCommand::Undo() {
    if (!epoch_) return;
    epoch_->SetName(oldName_);
    portal_->TellObservers(kEpochRenamed);
}
