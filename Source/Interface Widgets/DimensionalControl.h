// An entry of a value with one unit, chosen in a menu: what the entries of a number and of a vector
// have in common. Choosing another unit is an edit like any other. Rules as for Entry.
#pragma once

#include <memory>

#include "Interface Widgets/Entry.h"
#include "Interface Widgets/UnitMenu.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuField.h"

template <typename Value, typename Factory = CommandFactory<Value>>
class DimensionalControl : public ValueEntry<Value, Factory> {
public:
    void AttachedToWindow() override {
        if (units_ != nullptr) units_->SetTargetForItems(this);
    }
    void MessageReceived(BMessage* message) override {
        double uval = 0.0;
        if (message->what == UnitMenu::kUnitChosen &&
            message->FindDouble(UnitMenu::kUnitField, &uval) == B_OK)
            ChooseUnit(uval);
        else
            Entry::MessageReceived(message);
    }

protected:
    // `unitMenuField`: the archive of the unit menu's field. `unitLabel` is what a screen reader
    // says of it.
    DimensionalControl(const char* name, orientation direction, EpochPortal* portal,
                       const BMessage& unitMenuField, const char* unitLabel)
        : ValueEntry<Value, Factory>(name, direction, portal),
          unitField_(MakeUnitField(unitMenuField, unitLabel)),
          units_(UnitMenuOf(unitField_)) {}

    void ShowEnabled(bool isEnabled) override {
        if (unitField_ != nullptr) unitField_->SetEnabled(isEnabled);
    }
    // Null if the archive was none.
    [[nodiscard]] BMenuField* UnitField() const { return unitField_; }
    void ShowUnit(double uval) {
        if (units_ != nullptr) units_->SetUval(uval);
    }

private:
    void ChooseUnit(double uval) {
        this->Commit();  // in the unit in which it was typed
        const auto source = this->Shown();
        if (!source) return;
        // Nothing is left that would be read in the new unit.
        this->Present(source.value, true);
        EpochPortal* const portal = this->Portal();
        if (!portal->PrepareForEdit()) return;
        std::unique_ptr<LCommand> command;
        {
            const ReadGuard guard(portal);
            Value value = source.factory->Current(*portal);
            value.SetUval(uval);
            command = source.factory->MakeCommand(portal, value);
        }
        ExecuteFiled(portal, std::move(command));
    }

    BMenuField* const unitField_;
    UnitMenu* const units_;
};
