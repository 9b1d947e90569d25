#include "SetCompVectorCommand.h"

#include "ChangeFlags.h"
#include "EpochPortal.h"

const VectorQuantity kPositionQuantity{
    &MassSystem::DisplaceCommand, &MassSystem::Position, &MassSystem::PositionUval,
    &MassSystem::SetPositionUval, kPositionChanged,      kCommandSetPosition};
const VectorQuantity kVelocityQuantity{&MassSystem::BoostCommand, &MassSystem::Velocity,
                                       &MassSystem::SpeedUval,    &MassSystem::SetSpeedUval,
                                       kVelocityChanged,          kCommandSetVelocity};

namespace {

constexpr int32 kAllComponents = -1;
constexpr double ThreeVector::*kComponents[] = {&ThreeVector::x, &ThreeVector::y, &ThreeVector::z};

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
    move_->Execute();
    oldUval_ = (system_->*quantity_.getUval)();
    (system_->*quantity_.setUval)(newUval_);
    return true;
}

void SetCompVectorCommand::Revert() {
    (system_->*quantity_.setUval)(oldUval_);
    move_->Undo();
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
