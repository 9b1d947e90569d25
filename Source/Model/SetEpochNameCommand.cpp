#include "SetEpochNameCommand.h"

#include <utility>

#include "ChangeFlags.h"
#include "EpochPortal.h"

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName)
    : portal_(portal), newName_(std::move(newName)), oldNameKnown_(false) {}

SetEpochNameCommand::SetEpochNameCommand(EpochPortal* portal, std::string newName,
                                         std::string oldName)
    : portal_(portal),
      newName_(std::move(newName)),
      oldName_(std::move(oldName)),
      oldNameKnown_(true) {}

void SetEpochNameCommand::Execute() {
    epoch_ = portal_->FocusEpoch();
    if (!oldNameKnown_) {
        oldName_ = epoch_->Name();
        oldNameKnown_ = true;
    }
    epoch_->SetName(newName_);
    portal_->TellObservers(kEpochRenamed);
}

void SetEpochNameCommand::Undo() {
    epoch_->SetName(oldName_);
    portal_->TellObservers(kEpochRenamed);
}
