#include "Simulation/Document/DocumentCheck.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/CompositeSystem.h"
#include "Platform/Application/BMessage.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/EpochReader.h"
#include "Simulation/Document/SimulationDocument.h"

namespace {

constexpr const char* kGroupField = "Bodies";

// A record, and how far the walk through the records nested in it has come.
struct Walk {
    BMessage record;
    int32 groups = 0;  // in how many groups of bodies it lies
    int32 field = 0;
    int32 item = 0;
};

using FieldNames = std::vector<std::string_view>;

// The next nested record of a walk; B_BAD_INDEX when there are no more.
status_t NextNested(Walk* walk, const FieldNames& except, Walk* nested) {
    std::string name;
    type_code type = 0;
    int32 count = 0;
    while (walk->record.GetInfo(B_MESSAGE_TYPE, walk->field, &name, &type, &count) == B_OK) {
        if (walk->item < count && std::ranges::find(except, name) == except.end()) {
            nested->groups = name == kGroupField ? walk->groups + 1 : 0;
            return walk->record.FindMessage(name.c_str(), walk->item++, &nested->record);
        }
        walk->field++;
        walk->item = 0;
    }
    return B_BAD_INDEX;
}

DocumentError CheckNested(const BMessage& record, const FieldNames& except) {
    const FieldNames nothing;
    std::vector<Walk> walks;
    walks.push_back({record, 0, 0, 0});
    while (!walks.empty()) {
        Walk nested;
        const status_t status =
            NextNested(&walks.back(), walks.size() == 1 ? except : nothing, &nested);
        if (status == B_BAD_INDEX)
            walks.pop_back();
        else if (status != B_OK)
            return DocumentError::Record(status);
        else if (nested.groups > kMaxGroupNesting)
            return DocumentError::Record(B_UNSUPPORTED);
        else
            walks.push_back(std::move(nested));
    }
    return {};
}

DocumentError CheckBody(const Body& body) {
    if (!IsFinite(body.Position())) return DocumentError::Content(kTextBadPosition, body.Name());
    if (!IsFinite(body.Velocity())) return DocumentError::Content(kTextBadVelocity, body.Name());
    if (!std::isfinite(body.M())) return DocumentError::Content(kTextBadMass, body.Name());
    if (!std::isfinite(body.Radius())) return DocumentError::Content(kTextBadRadius, body.Name());
    return {};
}

DocumentError CheckSystem(const MassSystem& system) {
    if (const auto* body = dynamic_cast<const Body*>(&system)) return CheckBody(*body);
    for (int32 i = 0; i < system.CountChildren(); i++)
        if (DocumentError error = CheckSystem(*system.ChildAt(i)); error.Failed()) return error;
    return {};
}

using Numbered = std::pair<int64, const MassSystem*>;

void GatherNumbered(const MassSystem& system, std::vector<Numbered>* into) {
    if (system.ID() > kLastProvisionalID) into->emplace_back(system.ID(), &system);
    for (int32 i = 0; i < system.CountChildren(); i++)
        GatherNumbered(*system.ChildAt(i), into);
}

DocumentError CheckIdentifiers(const MassSystem& root) {
    std::vector<Numbered> systems;
    GatherNumbered(root, &systems);
    if (root.ID() <= kLastProvisionalID)
        return DocumentError::Content(kTextReservedID, root.Name());
    for (const auto& [id, system] : systems) {
        const bool isReserved = id < 0 && !(system == &root && id == kRootSystemID);
        if (isReserved) return DocumentError::Content(kTextReservedID, system->Name());
        if (id > kMaxSystemID) return DocumentError::Content(kTextTooLargeID, system->Name());
    }
    // In the tree's order where they are equal.
    std::ranges::stable_sort(systems, {}, &Numbered::first);
    const auto taken = std::ranges::adjacent_find(systems, {}, &Numbered::first);
    if (taken == systems.end()) return {};
    return DocumentError::Content(kTextTakenID, std::next(taken)->second->Name());
}

}  // namespace

DocumentError CheckRecord(const BMessage& record) {
    return CheckNested(record, {kEpochsField, SimulationDocument::kHistoryField});
}

DocumentError CheckHistory(const BMessage& record) {
    return CheckNested(record, {});
}

DocumentError CheckEpochRecord(const BMessage& archive) {
    return CheckNested(archive, {Epoch::kChildrenField, Epoch::kStateField});
}

DocumentError CheckEpoch(const AbEpoch& epoch) {
    if (!std::isfinite(epoch.Time())) return DocumentError::Content(kTextBadTime, epoch.Name());
    if (epoch.RootSystem() == nullptr) return DocumentError::Content(kTextNoSystem, epoch.Name());
    if (DocumentError error = CheckSystem(*epoch.RootSystem()); error.Failed()) return error;
    return CheckIdentifiers(*epoch.RootSystem());
}
