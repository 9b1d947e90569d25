#include "Model/Commands/SetCompVectorCommand.h"

#include <unordered_map>

#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Systems/Body.h"
#include "Resources/CommandNames.h"

const VectorQuantity kPositionQuantity{&MassSystem::DisplaceCommand, &MassSystem::Position,
                                       &MassSystem::SetPosition,     &MassSystem::PositionUval,
                                       &MassSystem::SetPositionUval, kPositionChanged,
                                       kCommandSetPosition};
const VectorQuantity kVelocityQuantity{&MassSystem::BoostCommand, &MassSystem::Velocity,
                                       &MassSystem::SetVelocity,  &MassSystem::SpeedUval,
                                       &MassSystem::SetSpeedUval, kVelocityChanged,
                                       kCommandSetVelocity};

namespace {

constexpr int32 kAllComponents = -1;
constexpr double ThreeVector::*kComponents[] = {&ThreeVector::x, &ThreeVector::y, &ThreeVector::z};

void GatherBodies(MassSystem* system, std::vector<MassSystem*>* bodies) {
    if (dynamic_cast<Body*>(system)) bodies->push_back(system);
    for (int32 i = 0; i < system->CountChildren(); i++)
        GatherBodies(system->ChildAt(i), bodies);
}

}  // namespace

SetCompVectorCommand::SetCompVectorCommand(EpochPortal* portal, const VectorQuantity& quantity,
                                           int64 systemID, const DimVector& to)
    : FocusEpochCommand(portal, quantity.changeFlag, quantity.changeFlag),
      quantity_(quantity),
      systemID_(systemID),
      to_(to),
      component_(kAllComponents),
      newUval_(to.Uval()) {}

SetCompVectorCommand::SetCompVectorCommand(EpochPortal* portal, const VectorQuantity& quantity,
                                           int64 systemID, int32 component, const DimValue& to)
    : FocusEpochCommand(portal, quantity.changeFlag, quantity.changeFlag),
      quantity_(quantity),
      systemID_(systemID),
      component_(component),
      newUval_(to.Uval()) {
    to_.*kComponents[component] = to.Value();
}

SetCompVectorCommand::~SetCompVectorCommand() = default;

bool SetCompVectorCommand::Apply() {
    MassSystem* system = FindSystem(systemID_);
    if (!system) return false;
    // Made once, so that a redo moves every body to the same bits; made again only when the edit
    // now goes into another epoch. There a group may be the same object, with other members.
    const AbEpoch* const epoch = Portal()->FocusEpoch();
    if (system != system_ || epoch != epoch_) {
        system_ = system;
        epoch_ = epoch;
        move_ = MakeMove();
    }
    if (!move_) return false;
    std::vector<MassSystem*> bodies;
    GatherBodies(system, &bodies);
    formerly_.clear();
    for (const MassSystem* body : bodies)
        formerly_.emplace_back(body->ID(), (body->*quantity_.get)());
    move_->Execute();
    oldUval_ = (system_->*quantity_.getUval)();
    (system_->*quantity_.setUval)(newUval_);
    return true;
}

void SetCompVectorCommand::Revert() {
    MassSystem* const system = FindSystem(systemID_);
    if (!system) return;
    (system->*quantity_.setUval)(oldUval_);
    if (system == system_ && Portal()->FocusEpoch() == epoch_)
        move_->Undo();
    else
        RevertInOtherEpoch(system);
}

void SetCompVectorCommand::RevertInOtherEpoch(MassSystem* system) const {
    std::unordered_map<int64, MassSystem*> bodies;
    std::vector<MassSystem*> found;
    GatherBodies(system, &found);
    for (MassSystem* body : found)
        bodies.emplace(body->ID(), body);
    for (const auto& [id, value] : formerly_)
        if (const auto body = bodies.find(id); body != bodies.end())
            (body->second->*quantity_.set)(value);
}

std::unique_ptr<LCommand> SetCompVectorCommand::MakeMove() const {
    const ThreeVector current = (system_->*quantity_.get)();
    const ThreeVector to = component_ == kAllComponents ? to_ : WithComponent(current);
    if (!IsFinite(to)) return nullptr;  // of or relative to a group without mass, without a centre
    return std::unique_ptr<LCommand>((system_->*quantity_.makeCommand)(current, to));
}

ThreeVector SetCompVectorCommand::WithComponent(ThreeVector current) const {
    const auto component = kComponents[component_];
    const MassSystem* referent = Portal()->FocusEpoch()->SystemFromID(system_->RelativeTo());
    const double reference = referent ? (referent->*quantity_.get)().*component : 0.0;
    current.*component = reference + to_.*component;
    return current;
}
