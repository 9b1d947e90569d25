// Adds an epoch below the focus epoch. Owns the epoch while it is not in the tree.
#pragma once

#include "Model/Commands/LCommand.h"

class AbEpoch;
class EpochPortal;

class AddEpochCommand final : public LCommand {
public:
    AddEpochCommand(EpochPortal* portal, AbEpoch* epoch);
    ~AddEpochCommand() override;

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    AbEpoch* epoch_;
    bool owns_ = true;
};
