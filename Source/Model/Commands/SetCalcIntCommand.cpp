#include "Model/Commands/SetCalcIntCommand.h"

SetCalcIntCommand::SetCalcIntCommand(AbCalculator* calculator, Setter set, int32 newValue,
                                     int32 oldValue)
    : calculator_(calculator), set_(set), newValue_(newValue), oldValue_(oldValue) {}

void SetCalcIntCommand::Execute() {
    (calculator_->*set_)(newValue_);
}

void SetCalcIntCommand::Undo() {
    (calculator_->*set_)(oldValue_);
}
