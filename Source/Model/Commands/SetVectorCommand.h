// Sets the position or velocity of one system. Tells nobody: whoever made it does.
#pragma once

#include "Model/Commands/LCommand.h"
#include "Model/Systems/MassSystem.h"

class SetVectorCommand final : public LCommand {
public:
    using Setter = void (MassSystem::*)(ThreeVector);

    SetVectorCommand(MassSystem* system, Setter set, ThreeVector oldValue, ThreeVector newValue);

    void Execute() override;
    void Undo() override;

private:
    MassSystem* system_;
    Setter set_;
    ThreeVector oldValue_;
    ThreeVector newValue_;
};
