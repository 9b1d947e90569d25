#include "DocumentCheck.h"

#include <cmath>

#include "AbEpoch.h"
#include "BMessage.h"
#include "Body.h"
#include "CompositeSystem.h"
#include "EpochCursor.h"

namespace {

constexpr const char* kGroupField = "Bodies";

// A record, and how far the walk through the records nested in it has come.
struct Walk {
    BMessage record;
    int32 groups = 0;  // in how many groups of bodies it lies
    int32 field = 0;
    int32 item = 0;
};

// The next nested record of a walk; B_BAD_INDEX when there are no more.
status_t NextNested(Walk* walk, Walk* nested) {
    std::string name;
    type_code type = 0;
    int32 count = 0;
    while (walk->record.GetInfo(B_MESSAGE_TYPE, walk->field, &name, &type, &count) == B_OK) {
        if (walk->item < count) {
            nested->groups = name == kGroupField ? walk->groups + 1 : 0;
            return walk->record.FindMessage(name.c_str(), walk->item++, &nested->record);
        }
        walk->field++;
        walk->item = 0;
    }
    return B_BAD_INDEX;
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

DocumentError CheckEpoch(const AbEpoch& epoch) {
    if (!std::isfinite(epoch.Time())) return DocumentError::Content(kTextBadTime, epoch.Name());
    if (epoch.RootSystem() == nullptr) return DocumentError::Content(kTextNoSystem, epoch.Name());
    return CheckSystem(*epoch.RootSystem());
}

}  // namespace

DocumentError CheckRecord(const BMessage& record) {
    std::vector<Walk> walks;
    walks.push_back({record, 0, 0, 0});
    while (!walks.empty()) {
        Walk nested;
        const status_t status = NextNested(&walks.back(), &nested);
        if (status == B_BAD_INDEX)
            walks.pop_back();
        else if (status != B_OK)
            return DocumentError::Record(status);
        else if (nested.groups > CompositeSystem::kMaxReadNesting)
            return DocumentError::Record(B_UNSUPPORTED);
        else
            walks.push_back(std::move(nested));
    }
    return {};
}

DocumentError CheckEpochs(const std::vector<std::unique_ptr<AbEpoch>>& topLevel) {
    if (topLevel.empty()) return DocumentError::Content(kTextNoEpoch);
    for (const auto& top : topLevel)
        for (EpochCursor cursor(top.get()); cursor.GetEpoch() != nullptr; cursor.Increment())
            if (DocumentError error = CheckEpoch(*cursor.GetEpoch()); error.Failed()) return error;
    return {};
}
