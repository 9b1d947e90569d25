// The factories for the quantities of a mass system: of the one in focus, or of one chosen by its
// identifier. See CommandFactory for locks and threads.
#pragma once

#include <optional>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/SetCompVectorCommand.h"
#include "Model/Commands/SetPropertyCommand.h"

// Which system a factory speaks of: without a value, the one in focus.
using SystemChoice = std::optional<int64>;

// The system chosen; null when the focus epoch has none such.
MassSystem* ChosenSystem(const EpochPortal& portal, SystemChoice choice);

// A value without a unit: name, colours, switches.
template <typename T>
class SystemPropertyFactory final : public CommandFactory<T> {
public:
    using Getter = T (MassSystem::*)() const;
    using Setter = void (MassSystem::*)(T);

    SystemPropertyFactory(Getter get, Setter set, int32 changeFlags, CommandName name,
                          SystemChoice choice = {})
        : get_(get), set_(set), changeFlags_(changeFlags), name_(name), choice_(choice) {}

    T Current(const EpochPortal& portal) const override {
        const MassSystem* system = ChosenSystem(portal, choice_);
        return system ? (system->*get_)() : T{};
    }
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal, const T& value) const override {
        const MassSystem* system = ChosenSystem(*portal, choice_);
        if (!system || (system->*get_)() == value) return nullptr;
        return Named(name_, std::make_unique<SetSystemPropertyCommand<T>>(
                                portal, system->ID(), get_, set_, value, changeFlags_));
    }

private:
    Getter get_;
    Setter set_;
    int32 changeFlags_;
    CommandName name_;
    SystemChoice choice_;
};

SystemPropertyFactory<std::string> NameFactory(SystemChoice choice = {});
SystemPropertyFactory<rgb_color> TrailColorFactory(SystemChoice choice = {});
SystemPropertyFactory<rgb_color> DiscColorFactory(SystemChoice choice = {});
SystemPropertyFactory<bool> TrailOnFactory(SystemChoice choice = {});
SystemPropertyFactory<bool> DiscOnFactory(SystemChoice choice = {});
// What the system is shown relative to, by identifier.
SystemPropertyFactory<int64> RelativeToFactory(SystemChoice choice = {});

// Mass (GM, m3/s2) or radius (m) of a body, with its unit. Negative entries count as their
// magnitude, infinite ones and NaN are refused; those of a group follow from its members and take
// the unit alone.
class SystemQuantityFactory final : public QuantityCommandFactory {
public:
    enum class Quantity { kMass, kRadius };
    explicit SystemQuantityFactory(Quantity quantity, SystemChoice choice = {})
        : quantity_(quantity), choice_(choice) {}

    DimValue Current(const EpochPortal& portal) const override;
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal,
                                          const DimValue& value) const override;

private:
    Quantity quantity_;
    SystemChoice choice_;
};

// Position or velocity with its unit. Shown and entered relative to the system's referent, stored
// absolute. Entries that are not finite are refused.
class SystemVectorFactory final : public VectorCommandFactory {
public:
    // `quantity`: kPositionQuantity or kVelocityQuantity.
    explicit SystemVectorFactory(const VectorQuantity& quantity, SystemChoice choice = {})
        : quantity_(quantity), choice_(choice) {}

    DimVector Current(const EpochPortal& portal) const override;
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal,
                                          const DimVector& value) const override;
    // One component (0: x, 1: y, 2: z).
    std::unique_ptr<LCommand> MakeComponentCommand(EpochPortal* portal, int32 component,
                                                   const DimValue& value) const;

private:
    const VectorQuantity& quantity_;
    SystemChoice choice_;
};
