#include "Model/Commands/DissolveSystemCommand.h"

#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Systems/CompositeSystem.h"

DissolveSystemCommand::DissolveSystemCommand(EpochPortal* portal, int64 systemID)
    : FocusEpochCommand(portal, kSystemRemoved, kSystemAdded), systemID_(systemID) {}

DissolveSystemCommand::~DissolveSystemCommand() = default;

bool DissolveSystemCommand::Apply() {
    auto* const group = dynamic_cast<CompositeSystem*>(FindSystem(systemID_));
    if (!group || !group->Parent()) return false;
    MassSystem* const parent = group->Parent();
    parentID_ = parent->ID();

    std::vector<MassSystem*> members;
    members.reserve(static_cast<std::size_t>(group->CountChildren()));
    for (int32 i = 0; i < group->CountChildren(); i++)
        members.push_back(group->ChildAt(i));
    memberIDs_.clear();
    memberIDs_.reserve(members.size());
    for (const MassSystem* member : members)
        memberIDs_.push_back(member->ID());

    setSystem_.reset();
    if (Portal()->FocusSystem() == group) {
        const int64 next = members.empty() ? kNoSystemID : members.front()->ID();
        setSystem_ = std::make_unique<SetSystemToCommand>(Portal(), next);
        setSystem_->Execute();
    }
    for (MassSystem* member : members)
        parent->AddChild(member);
    parent->RemoveChild(group);
    ownedGroup_.reset(group);
    return true;
}

void DissolveSystemCommand::Revert() {
    MassSystem* const parent = FindSystem(parentID_);
    if (!parent) return;
    MassSystem* const group = ownedGroup_.release();
    parent->AddChild(group);
    for (const int64 id : memberIDs_)
        if (MassSystem* const member = FindSystem(id)) group->AddChild(member);
    if (setSystem_) setSystem_->Undo();
}
