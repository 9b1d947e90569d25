// The edits of single values, one template for the systems of the focus epoch and one for the epoch
// itself, each given the getter and setter of the value. A value with its unit is two of them in a
// MacroCommand.
//
//   new SetSystemPropertyCommand<double>(portal, id, &MassSystem::M, &MassSystem::SetM, m,
//                                        kMassOrRadiusChanged | kPositionChanged)
//   new SetEpochPropertyCommand<int32>(portal, &AbEpoch::Order, &AbEpoch::SetOrder, 8,
//                                      kEpochSettingsChanged)
#pragma once

#include <type_traits>
#include <utility>

#include "Model/Commands/FocusEpochCommand.h"
#include "Model/Sharing/EpochPortal.h"

template <typename T>
class SetSystemPropertyCommand final : public FocusEpochCommand {
public:
    using Getter = T (MassSystem::*)() const;
    using Setter = void (MassSystem::*)(T);

    SetSystemPropertyCommand(EpochPortal* portal, int64 systemID, Getter get, Setter set,
                             std::type_identity_t<T> value, int32 what)
        : FocusEpochCommand(portal, what, what),
          systemID_(systemID),
          get_(get),
          set_(set),
          newValue_(std::move(value)) {}

protected:
    bool Apply() override {
        MassSystem* system = FindSystem(systemID_);
        if (!system) return false;
        oldValue_ = (system->*get_)();
        (system->*set_)(newValue_);
        return true;
    }
    void Revert() override {
        if (MassSystem* system = FindSystem(systemID_)) (system->*set_)(oldValue_);
    }

private:
    int64 systemID_;
    Getter get_;
    Setter set_;
    T newValue_;
    T oldValue_{};
};

template <typename T>
class SetEpochPropertyCommand final : public FocusEpochCommand {
public:
    using Getter = T (AbEpoch::*)() const;
    using Setter = void (AbEpoch::*)(T);

    SetEpochPropertyCommand(EpochPortal* portal, Getter get, Setter set,
                            std::type_identity_t<T> value, int32 what)
        : FocusEpochCommand(portal, what, what),
          get_(get),
          set_(set),
          newValue_(std::move(value)) {}

protected:
    bool Apply() override {
        AbEpoch* epoch = Portal()->FocusEpoch();
        oldValue_ = (epoch->*get_)();
        (epoch->*set_)(newValue_);
        return true;
    }
    void Revert() override { (Portal()->FocusEpoch()->*set_)(oldValue_); }

private:
    Getter get_;
    Setter set_;
    T newValue_;
    T oldValue_{};
};
