// Adds the record of a run below the epoch that it began from; what is in focus stays. Owns the
// epoch while it is not in the tree.
#pragma once

#include <memory>

#include "Model/Commands/LCommand.h"
#include "Model/Epochs/Epoch.h"

class EpochPortal;

class AddRunCommand final : public LCommand {
public:
    AddRunCommand(EpochPortal* portal, AbEpoch* start, std::unique_ptr<Epoch> run);

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* const portal_;
    AbEpoch* const start_;
    std::unique_ptr<Epoch> owned_;
    Epoch* const run_;
};
