// The factory for the elements of a system's osculating orbit: of the one in focus, or of one
// chosen by its identifier. Setting one sets position and velocity, as one step. See CommandFactory
// for locks and threads.
#pragma once

#include "Model/Commands/SystemFactories.h"
#include "Model/Systems/OrbitalElements.h"

class OrbitFactory final : public CommandFactory<double> {
public:
    explicit OrbitFactory(OrbitalElement element, SystemChoice choice = {})
        : element_(element), choice_(choice) {}

    // NaN: the system has no orbit.
    double Current(const EpochPortal& portal) const override;
    // Null also when the system has no orbit, or there is none with that value.
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal, const double& value) const override;

private:
    OrbitalElement element_;
    SystemChoice choice_;
};
