#include "Model/Commands/FocusEpochCommand.h"

#include "Model/Commands/NewEpochCommand.h"
#include "Model/Sharing/EpochPortal.h"

FocusEpochCommand::FocusEpochCommand(EpochPortal* portal, int32 doneFlags, int32 undoneFlags)
    : portal_(portal), doneFlags_(doneFlags), undoneFlags_(undoneFlags) {}

FocusEpochCommand::~FocusEpochCommand() = default;

MassSystem* FocusEpochCommand::FindSystem(int64 id) const {
    MassSystem* root = portal_->FocusEpoch()->RootSystem();
    return root ? root->SystemFromID(id) : nullptr;
}

bool FocusEpochCommand::NestsTooDeeply() const {
    return !portal_->FocusEpoch()->Writeable() && NewEpochCommand(portal_).NestsTooDeeply();
}

void FocusEpochCommand::Execute() {
    if (reversedInCopy_) {
        // In the record the edit is still there.
        reversal_->Undo();
        reversedInCopy_ = false;
        applied_ = true;
        portal_->TellObservers(doneFlags_);
        return;
    }
    reversal_.reset();
    copied_ = !portal_->FocusEpoch()->Writeable();
    if (copied_) {
        if (!newEpoch_) newEpoch_ = std::make_unique<NewEpochCommand>(portal_);
        newEpoch_->Execute();
    }
    applied_ = Apply();
    if (applied_) {
        portal_->TellObservers(doneFlags_);
    } else if (copied_) {
        newEpoch_->Undo();
        copied_ = false;
    }
}

void FocusEpochCommand::Undo() {
    if (!applied_) return;
    // A copy that was made for the edit leaves the tree anyhow.
    if (!copied_ && !portal_->FocusEpoch()->Writeable())
        RevertInCopy();
    else
        Revert();
    if (copied_) newEpoch_->Undo();
    portal_->TellObservers(undoneFlags_);
    applied_ = false;
    copied_ = false;
}

// When it is done again, the copy is as it was left: without the edit.
void FocusEpochCommand::RevertInCopy() {
    const bool isFirst = !reversal_;
    if (isFirst) reversal_ = std::make_unique<NewEpochCommand>(portal_);
    reversal_->Execute();
    reversedInCopy_ = true;
    if (isFirst) Revert();
}
