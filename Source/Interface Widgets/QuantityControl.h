// An entry of a quantity: a number and a menu of its units. What is typed may name a unit of its
// own. Rules as for Entry.
#pragma once

#include "Interface Widgets/DimensionalControl.h"

class InterfaceTexts;
class NumberTextControl;
class UnitTable;

class QuantityControl : public DimensionalControl<DimValue> {
public:
    // `unitMenuField`: the archive of the unit menu's field. `units` is not owned. `label` is what
    // a screen reader says.
    QuantityControl(const char* name, const char* label, EpochPortal* portal,
                    const UnitTable* units, const BMessage& unitMenuField,
                    const InterfaceTexts& texts);

    // The number can only be read; its unit can still be chosen.
    void SetEditable(bool isEditable);

    void SetFaded(bool isFaded) override;
    void AttachedToWindow() override;

protected:
    bool CommitPending() override;
    void Present(const std::optional<DimValue>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    NumberTextControl* const number_;
};
