#include "Model/Commands/SystemFactories.h"

#include <cmath>

#include "Model/Commands/MacroCommand.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Resources/CommandNames.h"

namespace {

struct QuantityAccess {
    double (MassSystem::*get)() const;
    void (MassSystem::*set)(double);
    double (MassSystem::*getUval)() const;
    void (MassSystem::*setUval)(double);
    int32 changeFlags;
    CommandName name;
};

const QuantityAccess& AccessTo(SystemQuantityFactory::Quantity quantity) {
    static constexpr QuantityAccess kMass{&MassSystem::M,
                                          &MassSystem::SetM,
                                          &MassSystem::MassUval,
                                          &MassSystem::SetMassUval,
                                          kMassOrRadiusChanged | kPositionChanged,
                                          kCommandSetMass};
    static constexpr QuantityAccess kRadius{&MassSystem::Radius,     &MassSystem::SetRadius,
                                            &MassSystem::RadiusUval, &MassSystem::SetRadiusUval,
                                            kMassOrRadiusChanged,    kCommandSetRadius};
    return quantity == SystemQuantityFactory::Quantity::kMass ? kMass : kRadius;
}

bool AllCanBeEntered(const ThreeVector& v) {
    return CanBeEntered(v.x) && CanBeEntered(v.y) && CanBeEntered(v.z);
}

// What the system's quantity is relative to: zero for the origin, and for a referent that is gone;
// no number for a group without mass, which has no centre. Then nothing can be entered.
ThreeVector ReferentValue(const EpochPortal& portal, const MassSystem& system,
                          const VectorQuantity& quantity) {
    const MassSystem* referent = portal.FocusEpoch()->SystemFromID(system.RelativeTo());
    return referent ? (referent->*quantity.get)() : ThreeVector{};
}

}  // namespace

MassSystem* ChosenSystem(const EpochPortal& portal, SystemChoice choice) {
    if (choice) {
        MassSystem* root = portal.FocusEpoch()->RootSystem();
        return root ? root->SystemFromID(*choice) : nullptr;
    }
    MassSystem* focus = portal.FocusSystem();
    return focus->ID() == kNoSystemID ? nullptr : focus;
}

SystemPropertyFactory<std::string> NameFactory(SystemChoice choice) {
    return {&MassSystem::Name, &MassSystem::SetName, kNameChanged, kCommandSetName, choice};
}

SystemPropertyFactory<rgb_color> TrailColorFactory(SystemChoice choice) {
    return {&MassSystem::TrailColor, &MassSystem::SetTrailColor, kTrailChanged, kCommandSetTrail,
            choice};
}

SystemPropertyFactory<rgb_color> DiscColorFactory(SystemChoice choice) {
    return {&MassSystem::DiscColor, &MassSystem::SetDiscColor, kDiscChanged, kCommandSetDisc,
            choice};
}

SystemPropertyFactory<bool> TrailOnFactory(SystemChoice choice) {
    return {&MassSystem::TrailOn, &MassSystem::SetTrailOn, kTrailChanged, kCommandSetTrail, choice};
}

SystemPropertyFactory<bool> DiscOnFactory(SystemChoice choice) {
    return {&MassSystem::DiscOn, &MassSystem::SetDiscOn, kDiscChanged, kCommandSetDisc, choice};
}

SystemPropertyFactory<int64> RelativeToFactory(SystemChoice choice) {
    return {&MassSystem::RelativeTo, &MassSystem::SetRelativeTo, kReferentChanged,
            kCommandSetRelativeTo, choice};
}

DimValue SystemQuantityFactory::Current(const EpochPortal& portal) const {
    const MassSystem* system = ChosenSystem(portal, choice_);
    if (!system) return {0.0, 1.0};
    const QuantityAccess& access = AccessTo(quantity_);
    return {(system->*access.get)(), (system->*access.getUval)()};
}

std::unique_ptr<LCommand> SystemQuantityFactory::MakeCommand(EpochPortal* portal,
                                                             const DimValue& value) const {
    const MassSystem* system = ChosenSystem(*portal, choice_);
    if (!system || !CanBeEntered(value.Value())) return nullptr;
    const QuantityAccess& access = AccessTo(quantity_);

    auto command = std::make_unique<MacroCommand>(2);
    bool changes = false;
    const bool isBody = dynamic_cast<const Body*>(system) != nullptr;
    const double magnitude = std::fabs(value.Value());
    if (isBody && magnitude != (system->*access.get)()) {
        command->AddCommand(std::make_unique<SetSystemPropertyCommand<double>>(
            portal, system->ID(), access.get, access.set, magnitude, access.changeFlags));
        changes = true;
    }
    if (value.Uval() != (system->*access.getUval)()) {
        command->AddCommand(std::make_unique<SetSystemPropertyCommand<double>>(
            portal, system->ID(), access.getUval, access.setUval, value.Uval(),
            access.changeFlags));
        changes = true;
    }
    if (!changes) return nullptr;
    return Named(access.name, std::move(command));
}

DimVector SystemVectorFactory::Current(const EpochPortal& portal) const {
    const MassSystem* system = ChosenSystem(portal, choice_);
    if (!system) return {ThreeVector{}, 1.0};
    return {(system->*quantity_.get)() - ReferentValue(portal, *system, quantity_),
            (system->*quantity_.getUval)()};
}

std::unique_ptr<LCommand> SystemVectorFactory::MakeCommand(EpochPortal* portal,
                                                           const DimVector& value) const {
    const MassSystem* system = ChosenSystem(*portal, choice_);
    if (!system || !AllCanBeEntered(value)) return nullptr;
    const DimVector current = Current(*portal);
    if (!IsFinite(current) || value == current) return nullptr;
    // A unit alone moves nothing, not even back: what is pending is committed before.
    if (static_cast<const ThreeVector&>(value) == current)
        return Named(quantity_.name, std::make_unique<SetSystemPropertyCommand<double>>(
                                         portal, system->ID(), quantity_.getUval, quantity_.setUval,
                                         value.Uval(), quantity_.changeFlag));
    const ThreeVector from = (system->*quantity_.get)();
    DimVector to{value + ReferentValue(*portal, *system, quantity_), value.Uval()};
    // What stays as it is keeps its bits: away from the referent and back it could lose the last.
    if (value.x == current.x) to.x = from.x;
    if (value.y == current.y) to.y = from.y;
    if (value.z == current.z) to.z = from.z;
    return Named(quantity_.name,
                 std::make_unique<SetCompVectorCommand>(portal, quantity_, system->ID(), to));
}

std::unique_ptr<LCommand> SystemVectorFactory::MakeComponentCommand(EpochPortal* portal,
                                                                    int32 component,
                                                                    const DimValue& value) const {
    const MassSystem* system = ChosenSystem(*portal, choice_);
    if (!system || !CanBeEntered(value.Value())) return nullptr;
    const DimVector current = Current(*portal);
    if (!IsFinite(current)) return nullptr;
    const double now = component == 0 ? current.x : component == 1 ? current.y : current.z;
    if (value.Value() == now) return MakeCommand(portal, {current, value.Uval()});
    return Named(quantity_.name, std::make_unique<SetCompVectorCommand>(
                                     portal, quantity_, system->ID(), component, value));
}
