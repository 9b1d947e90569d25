#include "Model/Commands/OrbitFactory.h"

#include <limits>

#include "Model/Commands/MacroCommand.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Systems/SystemOrbits.h"
#include "Resources/CommandNames.h"

namespace {

std::optional<SystemOrbit> CurrentOrbit(const EpochPortal& portal, const MassSystem* system) {
    return system ? OrbitOf(*system, portal.FocusEpoch()->RootSystem()) : std::nullopt;
}

}  // namespace

double OrbitFactory::Current(const EpochPortal& portal) const {
    const auto orbit = CurrentOrbit(portal, ChosenSystem(portal, choice_));
    return orbit ? orbit->elements.Value(element_) : std::numeric_limits<double>::quiet_NaN();
}

std::unique_ptr<LCommand> OrbitFactory::MakeCommand(EpochPortal* portal,
                                                    const double& value) const {
    const MassSystem* const system = ChosenSystem(*portal, choice_);
    auto orbit = CurrentOrbit(*portal, system);
    if (!orbit || orbit->elements.Value(element_) == value ||
        !SetElement(element_, value, &orbit->elements))
        return nullptr;
    const RelativeState state = StateOf(orbit->elements);
    const ThreeVector position = orbit->focus.position + state.position;
    const ThreeVector velocity = orbit->focus.velocity + state.velocity;
    if (!IsFinite(position) || !IsFinite(velocity)) return nullptr;
    auto command = std::make_unique<MacroCommand>(2);
    command->AddCommand(std::make_unique<SetCompVectorCommand>(
        portal, kPositionQuantity, system->ID(), DimVector{position, system->PositionUval()}));
    command->AddCommand(std::make_unique<SetCompVectorCommand>(
        portal, kVelocityQuantity, system->ID(), DimVector{velocity, system->SpeedUval()}));
    return Named(kCommandSetOrbit, std::move(command));
}
