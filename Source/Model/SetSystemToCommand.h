// Puts another mass system of the focus epoch into focus.
#pragma once

#include "LCommand.h"
#include "SupportDefs.h"

class EpochPortal;
class MassSystem;

class SetSystemToCommand final : public LCommand {
public:
    SetSystemToCommand(EpochPortal* portal, int64 systemID);

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    int64 systemID_;
    MassSystem* previous_ = nullptr;
};
