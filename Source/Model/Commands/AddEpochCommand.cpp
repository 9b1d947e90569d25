#include "Model/Commands/AddEpochCommand.h"

#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

AddEpochCommand::AddEpochCommand(EpochPortal* portal, AbEpoch* epoch)
    : portal_(portal), epoch_(epoch) {}

AddEpochCommand::~AddEpochCommand() {
    if (owns_) delete epoch_;
}

void AddEpochCommand::Execute() {
    AbEpoch* parent = portal_->FocusEpoch();
    // The null epoch answers success without taking the epoch.
    if (parent->AddChild(epoch_) == B_OK && epoch_->Parent() == parent) owns_ = false;
    portal_->TellObservers(kEpochAdded);
}

void AddEpochCommand::Undo() {
    if (owns_) return;
    epoch_->Parent()->RemoveChild(epoch_);
    owns_ = true;
    portal_->TellObservers(kEpochRemoved);
}
