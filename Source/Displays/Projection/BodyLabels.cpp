#include "Displays/Projection/BodyLabels.h"

#include <algorithm>
#include <unordered_set>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Epochs/EpochLimits.h"

namespace {

void AddGroups(const MassSystem* parent, std::vector<BodyLabels::Label>* groups) {
    for (int32 i = 0; i < parent->CountChildren(); i++) {
        const MassSystem& child = *parent->ChildAt(i);
        if (dynamic_cast<const Body*>(&child) != nullptr) continue;
        groups->push_back({child.ID(), child.Name()});
        AddGroups(&child, groups);
    }
}

void AddBodies(const MassSystem* system, std::unordered_set<const MassSystem*>* bodies) {
    bodies->insert(system);
    for (int32 i = 0; i < system->CountChildren(); i++)
        AddBodies(system->ChildAt(i), bodies);
}

}  // namespace

BodyLabels ReadBodyLabels(const AbEpoch& epoch, const std::vector<Body*>& bodies) {
    BodyLabels labels;
    labels.bodies.reserve(bodies.size());
    for (const Body* body : bodies)
        labels.bodies.push_back({body->ID(), body->Name()});
    if (const MassSystem* const root = epoch.RootSystem()) AddGroups(root, &labels.groups);
    return labels;
}

std::vector<TrajectoryCache::Member> ReadMembers(const AbEpoch& epoch,
                                                 const std::vector<Body*>& bodies, int64 system) {
    std::vector<TrajectoryCache::Member> members;
    const MassSystem* const found = system == kRootSystemID ? epoch.RootSystem()
                                    : system < 0            ? nullptr
                                                            : epoch.SystemFromID(system);
    if (found == nullptr) return members;
    std::unordered_set<const MassSystem*> wanted;
    AddBodies(found, &wanted);
    bool hasMass = false;
    for (std::size_t i = 0; i < bodies.size(); i++) {
        if (!wanted.contains(bodies[i])) continue;
        members.push_back({static_cast<int32>(i), bodies[i]->M()});
        hasMass = hasMass || bodies[i]->M() > 0.0;
    }
    if (!hasMass)
        for (TrajectoryCache::Member& member : members)
            member.weight = 1.0;
    // What has no mass does not move the center, and may be younger than the trails.
    std::erase_if(members,
                  [](const TrajectoryCache::Member& member) { return !(member.weight > 0.0); });
    return members;
}
