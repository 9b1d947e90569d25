#include "Model/Commands/SetSystemToCommand.h"

#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

SetSystemToCommand::SetSystemToCommand(EpochPortal* portal, int64 systemID)
    : portal_(portal), systemID_(systemID) {}

void SetSystemToCommand::Execute() {
    previousID_ = portal_->FocusSystem()->ID();
    portal_->SetSystemFromID(systemID_);
    portal_->TellObservers(kFocusSystemChanged);
}

void SetSystemToCommand::Undo() {
    portal_->SetSystemFromID(previousID_);
    portal_->TellObservers(kFocusSystemChanged);
}
