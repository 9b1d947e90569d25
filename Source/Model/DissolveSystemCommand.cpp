#include "DissolveSystemCommand.h"

#include "ChangeFlags.h"
#include "CompositeSystem.h"
#include "EpochPortal.h"
#include "SetSystemToCommand.h"

DissolveSystemCommand::DissolveSystemCommand(EpochPortal* portal, int64 systemID)
    : FocusEpochCommand(portal, kSystemRemoved, kSystemAdded), systemID_(systemID) {}

DissolveSystemCommand::~DissolveSystemCommand() = default;

bool DissolveSystemCommand::Apply() {
    group_ = dynamic_cast<CompositeSystem*>(FindSystem(systemID_));
    if (!group_ || !group_->Parent()) return false;
    parent_ = group_->Parent();

    members_.clear();
    for (int32 i = 0; i < group_->CountChildren(); i++)
        members_.push_back(group_->ChildAt(i));

    setSystem_.reset();
    if (Portal()->FocusSystem() == group_) {
        const int64 next = members_.empty() ? kNoSystemID : members_.front()->ID();
        setSystem_ = std::make_unique<SetSystemToCommand>(Portal(), next);
        setSystem_->Execute();
    }
    for (MassSystem* member : members_)
        parent_->AddChild(member);
    parent_->RemoveChild(group_);
    ownedGroup_.reset(group_);
    return true;
}

void DissolveSystemCommand::Revert() {
    parent_->AddChild(ownedGroup_.release());
    for (MassSystem* member : members_)
        group_->AddChild(member);
    if (setSystem_) setSystem_->Undo();
}
