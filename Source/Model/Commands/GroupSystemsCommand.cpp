#include "Model/Commands/GroupSystemsCommand.h"

#include <algorithm>

#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Systems/CompositeSystem.h"

namespace {

bool IsWithin(const MassSystem* system, const MassSystem* group) {
    for (; system; system = system->Parent())
        if (system == group) return true;
    return false;
}

int32 DepthOf(const MassSystem* system) {
    int32 depth = 0;
    while ((system = system->Parent()) != nullptr)
        depth++;
    return depth;
}

// How many levels lie below it.
int32 HeightOf(const MassSystem* system) {
    int32 height = 0;
    for (int32 i = 0; i < system->CountChildren(); i++)
        height = std::max(height, 1 + HeightOf(system->ChildAt(i)));
    return height;
}

}  // namespace

GroupSystemsCommand::GroupSystemsCommand(EpochPortal* portal, std::vector<int64> members,
                                         std::string name, int64 newID)
    : FocusEpochCommand(portal, kSystemAdded, kSystemRemoved),
      memberIDs_(std::move(members)),
      name_(std::move(name)),
      newID_(newID) {}

GroupSystemsCommand::~GroupSystemsCommand() = default;

GroupSystemsCommand::Systems GroupSystemsCommand::FindMembers() const {
    Systems found;
    for (const int64 id : memberIDs_) {
        MassSystem* system = FindSystem(id);
        if (system && system->Parent()) found.push_back(system);
    }
    // A part of another member moves along with it.
    Systems members;
    for (MassSystem* member : found)
        if (std::ranges::none_of(found, [&](const MassSystem* other) {
                return other != member && IsWithin(member, other);
            }))
            members.push_back(member);
    return members;
}

// The innermost group that holds them all.
MassSystem* GroupSystemsCommand::PlaceFor(const Systems& members) {
    MassSystem* place = members.front()->Parent();
    const auto holdsAll = [&](const MassSystem* group) {
        return std::ranges::all_of(
            members, [&](const MassSystem* member) { return IsWithin(member, group); });
    };
    while (!holdsAll(place))
        place = place->Parent();
    return place;
}

// What is nested more deeply could be saved, but not read again.
bool GroupSystemsCommand::FitsInto(const MassSystem* place, const Systems& members) {
    const int32 memberDepth = DepthOf(place) + 2;
    return std::ranges::all_of(members, [=](const MassSystem* member) {
        return memberDepth + HeightOf(member) <= kMaxGroupNesting;
    });
}

GroupSystemsCommand::Obstacle GroupSystemsCommand::FindObstacle() const {
    const Systems members = FindMembers();
    if (members.empty()) return Obstacle::kNoMembers;
    return FitsInto(PlaceFor(members), members) ? Obstacle::kNone : Obstacle::kTooDeep;
}

bool GroupSystemsCommand::Apply() {
    const Systems members = FindMembers();
    // A redo may find another tree, which has the identifier.
    if (members.empty() || FindSystem(newID_)) return false;
    MassSystem* const place = PlaceFor(members);
    if (!FitsInto(place, members)) return false;

    if (!ownedGroup_)
        ownedGroup_ =
            std::make_unique<CompositeSystem>(name_.c_str(), newID_, members.front()->TrailColor(),
                                              members.front()->DiscColor(), kOriginID);
    MassSystem* const group = ownedGroup_.release();
    members_.clear();
    for (const MassSystem* member : members)
        members_.push_back({member->ID(), member->Parent()->ID()});
    for (MassSystem* member : members)
        group->AddChild(member);
    place->AddChild(group);

    setSystem_ = std::make_unique<SetSystemToCommand>(Portal(), newID_);
    setSystem_->Execute();
    return true;
}

void GroupSystemsCommand::Revert() {
    setSystem_->Undo();
    for (const Member& member : members_) {
        MassSystem* const system = FindSystem(member.id);
        MassSystem* const formerParent = FindSystem(member.formerParentID);
        if (system && formerParent) formerParent->AddChild(system);
    }
    auto* const group = dynamic_cast<CompositeSystem*>(FindSystem(newID_));
    if (!group) return;
    group->Parent()->RemoveChild(group);
    ownedGroup_.reset(group);
}
