#include "Model/Commands/SetVectorCommand.h"

SetVectorCommand::SetVectorCommand(MassSystem* system, Setter set, ThreeVector oldValue,
                                   ThreeVector newValue)
    : system_(system), set_(set), oldValue_(oldValue), newValue_(newValue) {}

void SetVectorCommand::Execute() {
    (system_->*set_)(newValue_);
}

void SetVectorCommand::Undo() {
    (system_->*set_)(oldValue_);
}
