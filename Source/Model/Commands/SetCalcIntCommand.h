// Changes one of the calculator's integer settings.
#pragma once

#include "Model/Commands/LCommand.h"
#include "Model/Sharing/AbCalculator.h"

class SetCalcIntCommand final : public LCommand {
public:
    using Setter = void (AbCalculator::*)(int32);

    SetCalcIntCommand(AbCalculator* calculator, Setter set, int32 newValue, int32 oldValue);

    void Execute() override;
    void Undo() override;

private:
    AbCalculator* calculator_;
    Setter set_;
    int32 newValue_;
    int32 oldValue_;
};
