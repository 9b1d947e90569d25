#include "Model/Commands/SetEpochNameCommand.h"

#include <utility>

#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName)
    : portal_(portal), newName_(std::move(newName)), oldNameKnown_(false) {}

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName,
                                         std::string oldName)
    : portal_(portal),
      newName_(std::move(newName)),
      oldName_(std::move(oldName)),
      oldNameKnown_(true) {}

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName, AbEpoch* epoch)
    : portal_(portal), newName_(std::move(newName)), oldNameKnown_(false), epoch_(epoch) {}

void SetEpochNameCommand::Execute() {
    if (!epoch_) epoch_ = portal_->FocusEpoch();
    applied_ = portal_->HasEpoch(epoch_);
    if (!applied_) return;
    if (!oldNameKnown_) {
        oldName_ = epoch_->Name();
        oldNameKnown_ = true;
    }
    epoch_->SetName(newName_);
    portal_->TellObservers(kEpochRenamed);
}

void SetEpochNameCommand::Undo() {
    if (!applied_) return;
    epoch_->SetName(oldName_);
    portal_->TellObservers(kEpochRenamed);
}
