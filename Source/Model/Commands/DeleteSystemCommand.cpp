#include "Model/Commands/DeleteSystemCommand.h"

#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

DeleteSystemCommand::DeleteSystemCommand(EpochPortal* portal, int64 systemID, int64 nextFocusID)
    : FocusEpochCommand(portal, kSystemRemoved, kSystemAdded),
      systemID_(systemID),
      nextFocusID_(nextFocusID) {}

DeleteSystemCommand::~DeleteSystemCommand() {
    if (owns_) delete system_;
}

bool DeleteSystemCommand::Apply() {
    system_ = FindSystem(systemID_);
    MassSystem* const parent = system_ ? system_->Parent() : nullptr;
    if (!parent) return false;
    parentID_ = parent->ID();
    movedFocus_ = HoldsFocus();
    if (movedFocus_) {
        if (!setSystem_) setSystem_ = std::make_unique<SetSystemToCommand>(Portal(), nextFocusID_);
        setSystem_->Execute();
        if (HoldsFocus()) Portal()->SetSystemTo(nullptr);
    }
    parent->RemoveChild(system_);
    owns_ = true;
    return true;
}

void DeleteSystemCommand::Revert() {
    MassSystem* const parent = FindSystem(parentID_);
    if (parent && parent->AddChild(system_) >= B_OK) owns_ = false;
    if (movedFocus_) setSystem_->Undo();
}

// A focus inside a deleted group would be left pointing at a system that is in no epoch.
bool DeleteSystemCommand::HoldsFocus() const {
    for (const MassSystem* s = Portal()->FocusSystem(); s; s = s->Parent()) {
        if (s == system_) return true;
    }
    return false;
}
