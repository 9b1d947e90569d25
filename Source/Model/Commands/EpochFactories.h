// The factories for the quantities of the focus epoch and of the calculator. See CommandFactory for
// locks and threads.
#pragma once

#include <limits>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/SetPropertyCommand.h"
#include "Model/Sharing/ChangeFlags.h"

class AbCalculator;

// The epoch's own name. Renaming is no edit of what the epoch records: a read-only epoch takes it.
class EpochNameFactory final : public StringCommandFactory {
public:
    std::string Current(const EpochPortal& portal) const override;
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal,
                                          const std::string& name) const override;
    [[nodiscard]] bool EditsEpoch() const override { return false; }
};

// The epoch's time (s) with its unit. Times that are not finite are refused.
class EpochTimeFactory final : public QuantityCommandFactory {
public:
    DimValue Current(const EpochPortal& portal) const override;
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal, const DimValue& time) const override;
};

// A value without a unit; what `accepts` refuses makes no command.
template <typename T>
class EpochPropertyFactory final : public CommandFactory<T> {
public:
    using Getter = T (AbEpoch::*)() const;
    using Setter = void (AbEpoch::*)(T);

    EpochPropertyFactory(Getter get, Setter set, bool (*accepts)(T), CommandName name)
        : get_(get), set_(set), accepts_(accepts), name_(name) {}

    T Current(const EpochPortal& portal) const override { return (portal.FocusEpoch()->*get_)(); }
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal, const T& value) const override {
        if (!accepts_(value) || Current(*portal) == value) return nullptr;
        return Named(name_, std::make_unique<SetEpochPropertyCommand<T>>(portal, get_, set_, value,
                                                                         kEpochSettingsChanged));
    }

private:
    Getter get_;
    Setter set_;
    bool (*accepts_)(T);
    CommandName name_;
};

// These accept what EpochLimits.h allows.
EpochPropertyFactory<double> CutoffFactory();
EpochPropertyFactory<int32> OrderFactory();
EpochPropertyFactory<int32> OnContactFactory();
EpochPropertyFactory<bool> COMOnGoFactory();

// An integer setting of the document's calculator, such as its updates per second.
class CalculatorIntFactory final : public IntCommandFactory {
public:
    using Getter = int32 (AbCalculator::*)() const;
    using Setter = void (AbCalculator::*)(int32);

    CalculatorIntFactory(Getter get, Setter set, int32 greatest = std::numeric_limits<int32>::max())
        : get_(get), set_(set), greatest_(greatest) {}

    int32 Current(const EpochPortal& portal) const override;
    // Settings below 1 or above the greatest are refused.
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal, const int32& value) const override;
    [[nodiscard]] bool EditsEpoch() const override { return false; }

private:
    Getter get_;
    Setter set_;
    int32 greatest_;
};

// Trail segment length in pixels, and display updates per second.
CalculatorIntFactory SegmentLengthFactory();
CalculatorIntFactory UpdatesPerSecondFactory();
