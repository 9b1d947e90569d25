#include "Model/Commands/LockingCommand.h"

#include "Model/Commands/UndoChain.h"
#include "Model/Sharing/EpochPortal.h"

LockingCommand::LockingCommand(LCommand* command, EpochPortal* portal, bool addToChain)
    : command_(command), portal_(portal), addToChain_(addToChain), keep_(addToChain) {
    SetName(command_->Name());
}

void LockingCommand::Execute() {
    portal_->CommitChanges();
    // Not read from the members below, where this object may be gone.
    EpochPortal* const portal = portal_;
    UndoChain* const chain = portal->GetUndoChain();
    chain->Lock();
    if (chain->WasDropped(this)) {
        chain->Unlock();
        return;
    }
    portal->WriteLock();
    command_->Execute();
    if (addToChain_) {
        addToChain_ = false;
        chain->AddExecuted(this);
    }
    if (!keep_) delete this;
    portal->WriteUnlock();
    chain->Unlock();
}

void LockingCommand::Undo() {
    portal_->WriteLock();
    command_->Undo();
    portal_->WriteUnlock();
}
