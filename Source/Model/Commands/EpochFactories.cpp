#include "Model/Commands/EpochFactories.h"

#include "Model/Commands/MacroCommand.h"
#include "Model/Commands/SetEpochNameCommand.h"
#include "Model/Commands/SetValueCommand.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Resources/CommandNames.h"

std::string EpochNameFactory::Current(const EpochPortal& portal) const {
    return portal.FocusEpoch()->Name();
}

std::unique_ptr<LCommand> EpochNameFactory::MakeCommand(EpochPortal* portal,
                                                        const std::string& name) const {
    if (Current(*portal) == name) return nullptr;
    return Named(kCommandNameEpoch, std::make_unique<SetEpochNameCommand>(portal, name));
}

DimValue EpochTimeFactory::Current(const EpochPortal& portal) const {
    return {portal.FocusEpoch()->Time(), portal.FocusEpoch()->TimeUval()};
}

std::unique_ptr<LCommand> EpochTimeFactory::MakeCommand(EpochPortal* portal,
                                                        const DimValue& time) const {
    const DimValue current = Current(*portal);
    if (!CanBeEntered(time.Value()) || time == current) return nullptr;
    auto command = std::make_unique<MacroCommand>(2);
    if (time.Value() != current.Value())
        command->AddCommand(std::make_unique<SetEpochPropertyCommand<double>>(
            portal, &AbEpoch::Time, &AbEpoch::SetTime, time.Value(), kTimeChanged));
    if (time.Uval() != current.Uval())
        command->AddCommand(std::make_unique<SetEpochPropertyCommand<double>>(
            portal, &AbEpoch::TimeUval, &AbEpoch::SetTimeUval, time.Uval(), kTimeChanged));
    return Named(kCommandSetTime, std::move(command));
}

EpochPropertyFactory<double> CutoffFactory() {
    return {&AbEpoch::Cutoff, &AbEpoch::SetCutoff, IsCutoff, kCommandSetCutoff};
}

EpochPropertyFactory<int32> OrderFactory() {
    return {&AbEpoch::Order, &AbEpoch::SetOrder, IsOrder, kCommandSetOrder};
}

EpochPropertyFactory<int32> OnContactFactory() {
    return {&AbEpoch::OnContact, &AbEpoch::SetOnContact, IsOnContact, kCommandSetOnContact};
}

EpochPropertyFactory<bool> COMOnGoFactory() {
    return {&AbEpoch::COMOnGo, &AbEpoch::SetCOMOnGo, [](bool) { return true; },
            kCommandSetCenterOnGo};
}

int32 CalculatorIntFactory::Current(const EpochPortal& portal) const {
    return (portal.GetCalculator()->*get_)();
}

std::unique_ptr<LCommand> CalculatorIntFactory::MakeCommand(EpochPortal* portal,
                                                            const int32& value) const {
    const int32 current = Current(*portal);
    if (value < 1 || value > greatest_ || value == current) return nullptr;
    return Named(kCommandSetAnimation, std::make_unique<SetCalcIntCommand>(portal->GetCalculator(),
                                                                           set_, value, current));
}

CalculatorIntFactory SegmentLengthFactory() {
    return {&AbCalculator::SegmentLength, &AbCalculator::SetSegmentLength};
}

CalculatorIntFactory UpdatesPerSecondFactory() {
    return {&AbCalculator::UpdatesPerSecond, &AbCalculator::SetUpdatesPerSecond,
            AbCalculator::kMaxUpdatesPerSecond};
}
