#include "Simulation/EditMessages.h"

#include <optional>

#include "Interface Widgets/ProgramMessages.h"
#include "Model/Commands/SetCompVectorCommand.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/Epochs/EpochWindow.h"
#include "Simulation/GroupWindow.h"
#include "Simulation/SimulationMenus.h"

namespace {

// Positions count from the first top-level epoch, as in the epoch window.
AbEpoch* EpochAt(EpochPortal* portal, int32 position) {
    const ReadGuard guard(portal);
    AbEpoch* const first = portal->RootEpoch()->ChildAt(0);
    if (first == nullptr || position < 0) return nullptr;
    EpochCursor cursor(first);
    for (; position > 0 && cursor.GetEpoch() != nullptr; position--)
        cursor.Increment();
    return cursor.GetEpoch();
}

// The epoch window names it by a pointer, too.
AbEpoch* EpochOf(const BMessage& message, EpochPortal* portal, const EpochWindow& epochs) {
    int32 position = 0;
    if (message.HasName(kEpochField)) return epochs.EpochFor(message);
    return message.FindInt32(kEpochIndexField, &position) == B_OK ? EpochAt(portal, position)
                                                                  : nullptr;
}

void Group(const BMessage& message, SimulationController* controller,
           const TellRefusal& tellRefusal) {
    std::vector<int64> ids;
    std::string name;
    int64 id = kNoSystemID;
    while (message.FindInt64(kBodyIDField, static_cast<int32>(ids.size()), &id) == B_OK)
        ids.push_back(id);
    if (message.FindString(GroupWindow::kNameField, &name) == B_OK &&
        controller->GroupSystems(ids, name) == SimulationController::Grouping::kTooDeep)
        tellRefusal(kTextGroupsTooDeep);
}

std::optional<ThreeVector> VectorOf(const BMessage& message, const char* field) {
    double values[3];
    if (message.FindDoubles(field, 0, 3, values) != B_OK) return std::nullopt;
    const ThreeVector vector{values[0], values[1], values[2]};
    return IsFinite(vector) ? std::optional(vector) : std::nullopt;
}

// What a hand did in a display. False for any other message.
bool TakeHandedBody(const BMessage& message, SimulationController* controller) {
    int64 system = kNoSystemID;
    static_cast<void>(message.FindInt64(kBodyIDField, &system));
    const auto place = VectorOf(message, kPlaceField);
    const auto velocity = VectorOf(message, kVelocityField);
    switch (message.what) {
        case kPlaceBody:
            if (place) controller->SetVector(system, kPositionQuantity, *place);
            return true;
        case kSteerBody:
            if (velocity) controller->SetVector(system, kVelocityQuantity, *velocity);
            return true;
        case kThrowBody:
            if (const SimulationController::Motion motion{place.value_or(ThreeVector{}),
                                                          velocity.value_or(ThreeVector{})};
                place && velocity)
                controller->CreateBody(&motion);
            return true;
        default:
            return false;
    }
}

}  // namespace

bool CarryOutEdit(const BMessage& message, SimulationController* controller, EpochPortal* portal,
                  const EpochWindow& epochs, const TellRefusal& tellRefusal) {
    int64 system = kNoSystemID;
    const bool hasSystem = message.FindInt64(kBodyIDField, &system) == B_OK;
    switch (message.what) {
        case kUndo:
            portal->CommitChanges();
            controller->Undo();
            break;
        case kRedo:
            portal->CommitChanges();
            controller->Redo();
            break;
        case kNewBody:
            controller->CreateBody();
            break;
        case kDeleteCurrentBody:
            controller->DeleteCurrentBody();
            break;
        case kDeleteBody:
            if (hasSystem) controller->DeleteBody(system);
            break;
        case kEditBody:
            if (hasSystem) controller->EditBody(system);
            break;
        case kSetRelativeTo:
            if (hasSystem) controller->SetRelativeTo(system);
            break;
        case kEditEpoch:
            if (AbEpoch* const epoch = EpochOf(message, portal, epochs); epoch != nullptr)
                controller->EditEpoch(epoch);
            break;
        case kDeleteEpoch:
            if (AbEpoch* const epoch = EpochOf(message, portal, epochs);
                epoch != nullptr && !controller->DeleteEpoch(epoch))
                tellRefusal(kTextEpochStays);
            break;
        case GroupWindow::kGroup:
            Group(message, controller, tellRefusal);
            break;
        case SimulationMenus::kDissolveGroup:
            controller->DissolveFocusSystem();
            break;
        case kLogEpoch:
            controller->DupCurrentEpoch();
            break;
        case kToCenterOfMass:
            controller->ToCenterOfMass();
            break;
        default:
            return TakeHandedBody(message, controller);
    }
    return true;
}
