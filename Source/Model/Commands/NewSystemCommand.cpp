#include "Model/Commands/NewSystemCommand.h"

#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

NewSystemCommand::NewSystemCommand(EpochPortal* portal, MassSystem* system, int64 parentID)
    : FocusEpochCommand(portal, kSystemAdded, kSystemRemoved),
      system_(system),
      systemID_(system->ID()),
      parentID_(parentID),
      setSystem_(std::make_unique<SetSystemToCommand>(portal, system->ID())) {}

NewSystemCommand::~NewSystemCommand() {
    if (owns_) delete system_;
}

bool NewSystemCommand::Apply() {
    MassSystem* const parent = FindSystem(parentID_);
    // A body takes no child, and a redo may find another tree, which has the identifier.
    if (!parent || FindSystem(systemID_) || parent->AddChild(system_) < B_OK) return false;
    owns_ = false;
    setSystem_->Execute();
    return true;
}

void NewSystemCommand::Revert() {
    setSystem_->Undo();
    MassSystem* const system = FindSystem(systemID_);
    if (!system) return;
    system->Parent()->RemoveChild(system);
    system_ = system;
    owns_ = true;
}
