#include "Simulation/Settings/SystemList.h"

#include <algorithm>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"

namespace {

void AddMembers(const MassSystem& group, int32 level, std::vector<SystemList::Row>* rows) {
    for (int32 i = 0; i < group.CountChildren(); i++) {
        const MassSystem& member = *group.ChildAt(i);
        rows->push_back({member.ID(), member.Name(), level});
        AddMembers(member, level + 1, rows);
    }
}

}  // namespace

bool SystemList::Has(int64 id) const {
    return std::any_of(rows.begin(), rows.end(), [id](const Row& row) { return row.id == id; });
}

SystemList ReadSystemList(const EpochPortal& portal) {
    SystemList list;
    if (const MassSystem* const root = portal.FocusEpoch()->RootSystem(); root != nullptr)
        AddMembers(*root, 0, &list.rows);
    return list;
}

SystemList::Focus ReadFocus(const EpochPortal& portal) {
    const MassSystem& system = *portal.FocusSystem();
    if (system.ID() == kNoSystemID) return {};
    return {system.ID(), system.RelativeTo(), dynamic_cast<const Body*>(&system) == nullptr};
}
