#include "FocusEpochCommand.h"

#include "EpochPortal.h"
#include "NewEpochCommand.h"

FocusEpochCommand::FocusEpochCommand(EpochPortal* portal, int32 doneFlags, int32 undoneFlags)
    : portal_(portal), doneFlags_(doneFlags), undoneFlags_(undoneFlags) {}

FocusEpochCommand::~FocusEpochCommand() = default;

MassSystem* FocusEpochCommand::FindSystem(int64 id) const {
    MassSystem* root = portal_->FocusEpoch()->RootSystem();
    return root ? root->SystemFromID(id) : nullptr;
}

void FocusEpochCommand::Execute() {
    copied_ = !portal_->FocusEpoch()->Writeable();
    if (copied_) {
        if (!newEpoch_) newEpoch_ = std::make_unique<NewEpochCommand>(portal_);
        newEpoch_->Execute();
    }
    applied_ = Apply();
    if (applied_) portal_->TellObservers(doneFlags_);
}

void FocusEpochCommand::Undo() {
    if (applied_) Revert();
    if (copied_) newEpoch_->Undo();
    if (applied_) portal_->TellObservers(undoneFlags_);
    applied_ = false;
    copied_ = false;
}
