#include "Model/Commands/NewEpochCommand.h"

#include "Model/Commands/AddEpochCommand.h"
#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

NewEpochCommand::NewEpochCommand(EpochPortal* portal) : portal_(portal) {}

NewEpochCommand::~NewEpochCommand() = default;

bool NewEpochCommand::NestsTooDeeply() const {
    int32 depth = 0;
    for (const AbEpoch* epoch = portal_->FocusEpoch(); epoch && epoch != portal_->RootEpoch();
         epoch = epoch->Parent())
        depth++;
    return depth >= kMaxDepth;
}

void NewEpochCommand::Execute() {
    AbEpoch* old = portal_->FocusEpoch();
    if (!add_) {
        AbEpoch* copy = old->Copy();
        if (!copy) return;
        add_ = std::make_unique<AddEpochCommand>(portal_, copy);
        setEpoch_ = std::make_unique<SetEpochToCommand>(portal_, copy, kFocusMovedToCopy);
    }
    wasWriteable_ = old->Writeable();
    old->SetWriteable(false);
    add_->Execute();
    setEpoch_->Execute();
}

void NewEpochCommand::Undo() {
    if (!add_) return;
    setEpoch_->Undo();
    add_->Undo();
    portal_->FocusEpoch()->SetWriteable(wasWriteable_);
}
