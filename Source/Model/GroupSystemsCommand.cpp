#include "GroupSystemsCommand.h"

#include <algorithm>

#include "ChangeFlags.h"
#include "CompositeSystem.h"
#include "SetSystemToCommand.h"

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

std::vector<GroupSystemsCommand::Member> GroupSystemsCommand::FindMembers() const {
    std::vector<Member> found;
    for (const int64 id : memberIDs_) {
        MassSystem* system = FindSystem(id);
        if (system && system->Parent()) found.push_back({system, system->Parent()});
    }
    // A part of another member moves along with it.
    std::vector<Member> members;
    for (const Member& member : found)
        if (std::ranges::none_of(found, [&](const Member& other) {
                return other.system != member.system && IsWithin(member.system, other.system);
            }))
            members.push_back(member);
    return members;
}

// The innermost group that holds them all.
MassSystem* GroupSystemsCommand::PlaceFor(const std::vector<Member>& members) {
    MassSystem* place = members.front().formerParent;
    const auto holdsAll = [&](const MassSystem* group) {
        return std::ranges::all_of(
            members, [&](const Member& member) { return IsWithin(member.system, group); });
    };
    while (!holdsAll(place))
        place = place->Parent();
    return place;
}

// What is nested more deeply could be saved, but not read again.
bool GroupSystemsCommand::FitsInto(const MassSystem* place, const std::vector<Member>& members) {
    const int32 memberDepth = DepthOf(place) + 2;
    return std::ranges::all_of(members, [=](const Member& member) {
        return memberDepth + HeightOf(member.system) <= CompositeSystem::kMaxNesting;
    });
}

GroupSystemsCommand::Obstacle GroupSystemsCommand::FindObstacle() const {
    const std::vector<Member> members = FindMembers();
    if (members.empty()) return Obstacle::kNoMembers;
    return FitsInto(PlaceFor(members), members) ? Obstacle::kNone : Obstacle::kTooDeep;
}

bool GroupSystemsCommand::Apply() {
    members_ = FindMembers();
    // A redo may find another tree, which has the identifier.
    if (members_.empty() || FindSystem(newID_)) return false;
    MassSystem* const place = PlaceFor(members_);
    if (!FitsInto(place, members_)) return false;

    if (!ownedGroup_)
        ownedGroup_ = std::make_unique<CompositeSystem>(
            name_.c_str(), newID_, members_.front().system->TrailColor(),
            members_.front().system->DiscColor(), kOriginID);
    group_ = ownedGroup_.release();
    for (const Member& member : members_)
        group_->AddChild(member.system);
    place->AddChild(group_);

    setSystem_ = std::make_unique<SetSystemToCommand>(Portal(), newID_);
    setSystem_->Execute();
    return true;
}

void GroupSystemsCommand::Revert() {
    setSystem_->Undo();
    for (const Member& member : members_)
        member.formerParent->AddChild(member.system);
    group_->Parent()->RemoveChild(group_);
    ownedGroup_.reset(static_cast<CompositeSystem*>(group_));
}
