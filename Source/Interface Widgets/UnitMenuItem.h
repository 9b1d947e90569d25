// One unit of a unit menu; its message tells the unit's factor as double "Units Pref". Rules as for
// BMenuItem.
#pragma once

#include "Interface Widgets/AbbrevMenuItem.h"

class UnitMenuItem : public AbbrevMenuItem {
public:
    // `uval`: one such unit in SI units.
    UnitMenuItem(const char* label, const char* abbreviation, double uval, BMessage* message,
                 char shortcut = 0, uint32 modifiers = 0);
    explicit UnitMenuItem(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);
    // Adds double "uval".
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;

    [[nodiscard]] double Uval() const { return uval_; }
    // Ignored unless positive and finite.
    void SetUval(double uval);

    // Adds the factor to the message.
    status_t SetMessage(BMessage* message) override;

private:
    double uval_ = 1.0;
};
