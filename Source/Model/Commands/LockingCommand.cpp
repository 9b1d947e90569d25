#include "Model/Commands/LockingCommand.h"

#include "Model/Commands/UndoChain.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Support/BAutolock.h"

LockingCommand::LockingCommand(LCommand* command, EpochPortal* portal, bool addToChain)
    : command_(command), portal_(portal), addToChain_(addToChain), keep_(addToChain) {
    SetName(command_->Name());
}

void LockingCommand::Execute() {
    portal_->CommitChanges();
    // Not read from the members below, where this object may be gone.
    EpochPortal* const portal = portal_;
    UndoChain* const chain = portal->GetUndoChain();
    const BAutolock chainLock(chain);
    if (chain->WasDropped(this)) return;
    const WriteGuard guard(portal);
    command_->Execute();
    if (addToChain_) {
        addToChain_ = false;
        chain->AddExecuted(this);
    }
    if (!keep_) delete this;
}

void LockingCommand::Undo() {
    const WriteGuard guard(portal_);
    command_->Undo();
}
