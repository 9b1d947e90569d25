#include "Simulation/Document/SimulationController.h"

#include <algorithm>
#include <cmath>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/DeleteEpochCommand.h"
#include "Model/Commands/DeleteSystemCommand.h"
#include "Model/Commands/DissolveSystemCommand.h"
#include "Model/Commands/GroupSystemsCommand.h"
#include "Model/Commands/LockingCommand.h"
#include "Model/Commands/MacroCommand.h"
#include "Model/Commands/NewEpochCommand.h"
#include "Model/Commands/NewSystemCommand.h"
#include "Model/Commands/SetCompVectorCommand.h"
#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Commands/SetPropertyCommand.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/NewIdentifiers.h"
#include "Resources/CommandNames.h"
#include "Resources/CommonTexts.h"
#include "Simulation/Document/BodyColors.h"
#include "Simulation/Document/CenterOfMass.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationDocument.h"

namespace {

bool AllCanBeEntered(const ThreeVector& v) {
    return CanBeEntered(v.x) && CanBeEntered(v.y) && CanBeEntered(v.z);
}

// A new body is an Earth.
constexpr double kNewBodyGM = 3.98600448e14;        // m3/s2
constexpr double kNewBodyRadius = 6378137.0;        // m
constexpr double kFirstOrbit = 149597870660.0;      // m, where there is no other orbit to go by
constexpr double kOrbitSpacing = 1.3;               // each new orbit against the widest one
constexpr double kGoldenAngle = 2.399963229728653;  // radians; spreads new bodies round

}  // namespace

SimulationController::SimulationController(SimulationDocument* document, RunControl* run,
                                           const ProgramResources* resources)
    : document_(document), run_(run), resources_(resources) {}

EpochPortal* SimulationController::Portal() const {
    return document_->Portal();
}

void SimulationController::PauseForEdit() {
    run_->PauseForUser();
}

int64 SimulationController::FocusSystemID() const {
    const ReadGuard guard(Portal());
    return Portal()->FocusSystem()->ID();
}

int64 SimulationController::NewSystemID() const {
    return NewIdentifiers({document_->Root()}).Next();
}

void SimulationController::CreateBody(const Motion* motion) {
    if (motion != nullptr &&
        !(AllCanBeEntered(motion->position) && AllCanBeEntered(motion->velocity)))
        return;
    PauseForEdit();
    EpochPortal* portal = Portal();
    portal->CommitChanges();
    if (motion != nullptr && !portal->PrepareForEdit()) return;

    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal);
        const MassSystem* focus = portal->FocusSystem();
        const MassSystem* parent = focus->Parent();
        if (!parent) parent = portal->FocusEpoch()->RootSystem();
        if (parent)
            command = std::make_unique<NewSystemCommand>(portal, MakeBody(motion).release(),
                                                         parent->ID());
    }
    ExecuteFiled(portal, Named(kCommandNewBody, std::move(command)));
}

std::unique_ptr<Body> SimulationController::MakeBody(const Motion* motion) {
    const int32 index = document_->NextBodyNameIndex();
    document_->SetNextBodyNameIndex(index < INT32_MAX ? index + 1 : 0);

    const std::vector<Body*> others = Portal()->BodiesInMassOrder();
    std::vector<rgb_color> inUse;
    inUse.reserve(others.size());
    for (const Body* body : others)
        inUse.push_back(body->DiscColor());
    const rgb_color color = BodyColors::Next(index, inUse);

    const int32 names = resources_->CountBodyNames();
    const char* const name = names > 0 ? resources_->BodyName(index % names) : "";
    auto body = std::make_unique<Body>(name, NewSystemID(), color, color, kOriginID);
    body->SetM(kNewBodyGM);
    body->SetRadius(kNewBodyRadius);
    ShowAsBefore(body.get());
    if (motion == nullptr) {
        Place(body.get(), others, index);
    } else {
        body->SetPosition(motion->position);
        body->SetVelocity(motion->velocity);
    }
    return body;
}

bool SimulationController::SetVector(int64 id, const VectorQuantity& quantity,
                                     const ThreeVector& to) {
    PauseForEdit();
    EpochPortal* portal = Portal();
    portal->CommitChanges();
    if (!AllCanBeEntered(to) || !portal->PrepareForEdit()) return false;
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal);
        const MassSystem* system = id >= 0 ? portal->FocusEpoch()->SystemFromID(id) : nullptr;
        if (system != nullptr && !((system->*quantity.get)() == to))
            command = std::make_unique<SetCompVectorCommand>(
                portal, quantity, id, DimVector{to, (system->*quantity.getUval)()});
    }
    return ExecuteFiled(portal, Named(quantity.name, std::move(command)));
}

// An Earth's mass and radius are one; place and velocity are in the units that the user has before
// the eyes.
void SimulationController::ShowAsBefore(Body* body) const {
    body->SetMassUval(kNewBodyGM);
    body->SetRadiusUval(kNewBodyRadius);
    const MassSystem* const focus = Portal()->FocusSystem();
    if (focus->ID() == kNoSystemID) return;
    body->SetPositionUval(focus->PositionUval());
    body->SetSpeedUval(focus->SpeedUval());
}

void SimulationController::Place(Body* body, const std::vector<Body*>& others, int32 turn) const {
    if (others.empty()) return;
    const Body& heaviest = *others.front();

    double widest = 0.0;
    for (const Body* other : others)
        widest = std::max(widest, Length(other->Position() - heaviest.Position()));
    double distance = widest > 0.0 ? kOrbitSpacing * widest : kFirstOrbit;
    // Outside everything that could be touched, whatever its radius.
    for (const Body* other : others)
        distance = std::max(distance, Length(other->Position() - heaviest.Position()) +
                                          2.0 * (other->Radius() + body->Radius()));

    const double angle = kGoldenAngle * turn;
    const double speed = std::sqrt((heaviest.M() + body->M()) / distance);
    const ThreeVector outward{std::cos(angle), std::sin(angle), 0.0};
    const ThreeVector forward{-std::sin(angle), std::cos(angle), 0.0};
    body->SetPosition(heaviest.Position() + distance * outward);
    body->SetVelocity(heaviest.Velocity() + speed * forward);
}

int64 SimulationController::NextFocusAfter(int64 deleted) const {
    MassSystem* root = Portal()->FocusEpoch()->RootSystem();
    const MassSystem* doomed = root ? root->SystemFromID(deleted) : nullptr;
    const auto isDoomed = [doomed](const MassSystem* system) {
        for (; system; system = system->Parent())
            if (system == doomed) return true;
        return false;
    };
    int64 before = kNoSystemID;
    for (const MassSystem* system : Portal()->SystemsInIDOrder()) {
        if (isDoomed(system)) continue;
        if (system->ID() > deleted) return system->ID();
        before = system->ID();
    }
    return before;
}

void SimulationController::DeleteBody(int64 id) {
    PauseForEdit();
    EpochPortal* portal = Portal();
    portal->CommitChanges();
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal);
        if (id >= 0 && portal->FocusEpoch()->SystemFromID(id) != nullptr)
            command = std::make_unique<DeleteSystemCommand>(portal, id, NextFocusAfter(id));
    }
    ExecuteFiled(portal, Named(kCommandDeleteBody, std::move(command)));
}

void SimulationController::DeleteCurrentBody() {
    DeleteBody(FocusSystemID());
}

void SimulationController::EditBody(int64 id) {
    (new LockingCommand(new SetSystemToCommand(Portal(), id), Portal(), false))->Execute();
}

void SimulationController::SetRelativeTo(int64 id) {
    EpochPortal* portal = Portal();
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal);
        const MassSystem* const focus = portal->FocusSystem();
        const int64 focusID = focus->ID();
        if (focusID != kNoSystemID && focusID != id && focus->RelativeTo() != id &&
            portal->FocusEpoch()->SystemFromID(id))
            command = std::make_unique<SetSystemPropertyCommand<int64>>(
                portal, focusID, &MassSystem::RelativeTo, &MassSystem::SetRelativeTo, id,
                kReferentChanged);
    }
    ExecuteFiled(portal, Named(kCommandSetRelativeTo, std::move(command)));
}

SimulationController::Grouping SimulationController::GroupSystems(const std::vector<int64>& ids,
                                                                  const std::string& name) {
    using Obstacle = GroupSystemsCommand::Obstacle;
    PauseForEdit();
    EpochPortal* portal = Portal();
    std::unique_ptr<GroupSystemsCommand> command;
    Obstacle obstacle = Obstacle::kNone;
    {
        const ReadGuard guard(portal);
        command = std::make_unique<GroupSystemsCommand>(portal, ids, name, NewSystemID());
        obstacle = command->FindObstacle();
    }
    if (obstacle == Obstacle::kTooDeep) return Grouping::kTooDeep;
    const bool isDone = obstacle == Obstacle::kNone &&
                        ExecuteFiled(portal, Named(kCommandGroup, std::move(command)));
    return isDone ? Grouping::kDone : Grouping::kNoMembers;
}

bool SimulationController::DissolveSystem(int64 id) {
    PauseForEdit();
    EpochPortal* portal = Portal();
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal);
        const MassSystem* system = id >= 0 ? portal->FocusEpoch()->SystemFromID(id) : nullptr;
        const bool isGroup = system && !dynamic_cast<const Body*>(system);
        if (isGroup) command = std::make_unique<DissolveSystemCommand>(portal, id);
    }
    return ExecuteFiled(portal, Named(kCommandDissolveGroup, std::move(command)));
}

bool SimulationController::DissolveFocusSystem() {
    return DissolveSystem(FocusSystemID());
}

bool SimulationController::ToCenterOfMass() {
    PauseForEdit();
    EpochPortal* portal = Portal();
    portal->CommitChanges();

    std::unique_ptr<MacroCommand> command;
    CenterOfMass center;
    if (const ReadGuard guard(portal); FindCenterOfMass(portal->BodiesInMassOrder(), &center)) {
        const MassSystem* root = portal->FocusEpoch()->RootSystem();
        command = std::make_unique<MacroCommand>(2);
        command->AddCommand(std::make_unique<SetCompVectorCommand>(
            portal, kPositionQuantity, root->ID(), DimVector{ThreeVector{}, root->PositionUval()}));
        command->AddCommand(std::make_unique<SetCompVectorCommand>(
            portal, kVelocityQuantity, root->ID(), DimVector{ThreeVector{}, root->SpeedUval()}));
    }
    return ExecuteFiled(portal, Named(kCommandCenterOfMass, std::move(command)));
}

void SimulationController::EditEpoch(AbEpoch* epoch) {
    EpochPortal* const portal = Portal();
    {
        const ReadGuard guard(portal);
        if (epoch == portal->FocusEpoch() || !portal->HasEpoch(epoch)) return;
    }
    PauseForEdit();
    ExecuteFiled(portal,
                 Named(kCommandGoToEpoch, std::make_unique<SetEpochToCommand>(portal, epoch)));
}

bool SimulationController::DeleteEpoch(AbEpoch* epoch) {
    PauseForEdit();
    EpochPortal* portal = Portal();
    portal->CommitChanges();
    auto command = std::make_unique<DeleteEpochCommand>(portal, epoch);
    {
        const ReadGuard guard(portal);
        if (!command->CanExecute()) return false;
    }
    return ExecuteFiled(portal, Named(kCommandDeleteEpoch, std::move(command)));
}

void SimulationController::DupCurrentEpoch() {
    run_->Rest();
    std::unique_ptr<LCommand> command;
    if (const ReadGuard guard(Portal()); Portal()->FocusEpoch()->RootSystem() != nullptr)
        command = std::make_unique<NewEpochCommand>(Portal());
    ExecuteFiled(Portal(), Named(kCommandLogEpoch, std::move(command)));
    run_->UnRest();
}

bool SimulationController::Undo() {
    PauseForEdit();
    UndoChain* chain = document_->GetUndoChain();
    if (!chain->CanUndo()) return false;
    chain->Undo();
    return true;
}

bool SimulationController::Redo() {
    PauseForEdit();
    UndoChain* chain = document_->GetUndoChain();
    if (!chain->CanRedo()) return false;
    chain->Redo();
    return true;
}

MergeResult SimulationController::Collide(const BMessage& collisions, const Merged& merged) {
    run_->Rest();
    MergeResult result = MergeCollidingBodies(
        Portal(), collisions, resources_->InterfaceLabel(kLabelNameJoiner), run_->EndedIn());
    if (merged) merged(result);
    if (result.unmerged) run_->PauseForUser();
    run_->UnRest();
    return result;
}
