#include "Simulation/History/RunCheckpoint.h"

#include "Calculation/Calculator.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"

void RunCheckpoint::PutSettings(AbEpoch* epoch) const {
    epoch->SetOrder(order);
    epoch->SetCutoff(cutoff);
    epoch->SetOnContact(onContact);
    epoch->SetTime(state.time);
}

void RunCheckpoint::PutBody(std::size_t index, Body* body) const {
    body->SetName(state.names[index]);
    body->SetM(state.gm[index]);
    body->SetRadius(radii[index]);
    body->SetPosition(state.Position(index));
    body->SetVelocity(state.Velocity(index));
}

std::size_t RunCheckpoint::Bytes() const {
    // Identifier, mass, radius, place and velocity.
    constexpr std::size_t kNumbersOfBody = 3 + 3 + 3;
    return sizeof(RunCheckpoint) + calculator.FlattenedSize() +
           state.CountBodies() * (kNumbersOfBody * sizeof(double) + sizeof(std::string));
}

std::optional<RunCheckpoint> TakeCheckpoint(EpochPortal* portal, const Calculator& calculator) {
    RunCheckpoint checkpoint;
    const ReadGuard guard(portal);
    if (calculator.ArchiveRun(&checkpoint.calculator) != B_OK) return std::nullopt;
    const AbEpoch& epoch = *calculator.GetEpoch();
    checkpoint.order = epoch.Order();
    checkpoint.cutoff = epoch.Cutoff();
    checkpoint.onContact = epoch.OnContact();
    checkpoint.isBackwards = calculator.IsBackwards();
    checkpoint.state = StateOf(*portal);
    for (int32 i = 0; i < calculator.CountBodies(); i++)
        checkpoint.radii.push_back(calculator.BodyAt(i)->Radius());
    return checkpoint;
}
