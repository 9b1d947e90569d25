// An entry for a quantity: a number and a menu of its units. What is typed may name a unit of its
// own: "384400 km". The value is kept in SI units, exactly as it was set or typed; one that was set
// is shown with seven digits, one that was typed as it was typed. Rules as for BView.
//
// Sends kNumberEntered to its window when the user has entered something; the unit menu sends
// UnitMenu::kUnitChosen.
#pragma once

#include "Model/Units/DimValue.h"
#include "Platform/Interface/Handles/BGroupView.h"

class BMessage;
class InterfaceTexts;
class NumberTextControl;
class UnitMenu;
class UnitTable;

class NumberBox : public BGroupView {
public:
    static constexpr uint32 kNumberEntered = FourCC("nmen");

    // `unitMenuField`: the archive of the unit menu's field. `units` and `texts` are not owned.
    // `label` is what a screen reader says.
    NumberBox(const char* name, const char* label, const UnitTable* units,
              const BMessage& unitMenuField, const InterfaceTexts& texts);

    [[nodiscard]] double Value() const { return value_; }
    void SetValue(double value);
    // The same, but what the user has typed and not yet committed stays.
    void SetValueUnderHand(double value);
    [[nodiscard]] double Uval() const;
    // Shows the value in the unit nearest to this one.
    void SetUval(double uval);
    // Takes over what the user has typed, finished or not; true if that is another value. The user
    // is told of what is no number of a known unit; the value stays.
    bool Commit();
    // Shows the value again: the user has chosen another unit.
    void ShowValue();
    void MakeFocus(bool isFocus = true) override;

private:
    [[nodiscard]] DimValue Shown() const { return {value_, Uval()}; }

    NumberTextControl* const number_;
    UnitMenu* menu_ = nullptr;
    double value_ = 0.0;
};
