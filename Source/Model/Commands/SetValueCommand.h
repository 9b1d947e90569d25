// Give one value to one object, by its setter. They tell nobody: whoever made them does.
#pragma once

#include "Model/Commands/LCommand.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Systems/MassSystem.h"

template <typename Object, typename Value>
class SetValueCommand : public LCommand {
public:
    using Setter = void (Object::*)(Value);

    void Execute() override { (object_->*set_)(newValue_); }
    void Undo() override { (object_->*set_)(oldValue_); }

protected:
    SetValueCommand(Object* object, Setter set, Value oldValue, Value newValue)
        : object_(object), set_(set), oldValue_(oldValue), newValue_(newValue) {}

private:
    Object* const object_;
    const Setter set_;
    const Value oldValue_;
    const Value newValue_;
};

// The position or velocity of a system.
class SetVectorCommand final : public SetValueCommand<MassSystem, ThreeVector> {
public:
    SetVectorCommand(MassSystem* system, Setter set, ThreeVector oldValue, ThreeVector newValue)
        : SetValueCommand(system, set, oldValue, newValue) {}
};

// One of the calculator's integer settings.
class SetCalcIntCommand final : public SetValueCommand<AbCalculator, int32> {
public:
    SetCalcIntCommand(AbCalculator* calculator, Setter set, int32 newValue, int32 oldValue)
        : SetValueCommand(calculator, set, oldValue, newValue) {}
};
