// Puts another mass system of the focus epoch into focus.
#pragma once

#include "Model/Commands/LCommand.h"
#include "Model/Systems/MassSystem.h"

class EpochPortal;

class SetSystemToCommand final : public LCommand {
public:
    SetSystemToCommand(EpochPortal* portal, int64 systemID);

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    int64 systemID_;
    int64 previousID_ = kNoSystemID;
};
