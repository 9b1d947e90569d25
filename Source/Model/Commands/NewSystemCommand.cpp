#include "Model/Commands/NewSystemCommand.h"

#include <algorithm>
#include <utility>

#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

NewSystemCommand::NewSystemCommand(EpochPortal* portal, MassSystem* system, int64 parentID)
    : NewSystemCommand(portal, std::vector<MassSystem*>{system}, parentID) {}

NewSystemCommand::NewSystemCommand(EpochPortal* portal, std::vector<MassSystem*> systems,
                                   int64 parentID)
    : FocusEpochCommand(portal, kSystemAdded, kSystemRemoved),
      systems_(std::move(systems)),
      parentID_(parentID),
      setSystem_(std::make_unique<SetSystemToCommand>(portal, systems_.front()->ID())) {
    ids_.reserve(systems_.size());
    for (const MassSystem* system : systems_)
        ids_.push_back(system->ID());
}

NewSystemCommand::~NewSystemCommand() {
    if (!owns_) return;
    for (MassSystem* system : systems_)
        delete system;
}

// In the order of the identifiers; empty if one of them is missing.
std::vector<MassSystem*> NewSystemCommand::FindAll() const {
    const std::vector<MassSystem*> present = Portal()->SystemsInIDOrder();
    std::vector<MassSystem*> found;
    found.reserve(ids_.size());
    for (const int64 id : ids_) {
        const auto place = std::ranges::lower_bound(present, id, {}, &MassSystem::ID);
        if (place == present.end() || (*place)->ID() != id) return {};
        found.push_back(*place);
    }
    return found;
}

bool NewSystemCommand::HasAny() const {
    if (ids_.size() == 1) return FindSystem(ids_.front()) != nullptr;
    const std::vector<MassSystem*> present = Portal()->SystemsInIDOrder();
    return std::ranges::any_of(ids_, [&](int64 id) {
        return std::ranges::binary_search(present, id, {}, &MassSystem::ID);
    });
}

bool NewSystemCommand::Apply() {
    MassSystem* const parent = FindSystem(parentID_);
    // A body takes no child, and a redo may find another tree, which has the identifier.
    if (!parent || HasAny() || parent->AddChild(systems_.front()) < B_OK) return false;
    for (std::size_t i = 1; i < systems_.size(); i++)
        parent->AddChild(systems_[i]);
    owns_ = false;
    setSystem_->Execute();
    return true;
}

void NewSystemCommand::Revert() {
    setSystem_->Undo();
    // The tree may be a copy.
    std::vector<MassSystem*> found = FindAll();
    if (found.empty()) return;
    // What was added last mostly stands at the end.
    for (std::size_t i = found.size(); i-- > 0;)
        found[i]->Parent()->RemoveChild(found[i]);
    systems_ = std::move(found);
    owns_ = true;
}
