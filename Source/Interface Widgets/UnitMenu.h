// A pop-up menu of units, one of which is marked: the one that a quantity is shown in; and its
// items. Rules as for BMenu and BMenuItem.
#pragma once

#include "Interface Widgets/AbbrevMenuField.h"
#include "Platform/Interface/Handles/BMenu.h"

// One unit of a unit menu; its message has the unit's factor as double "Units Pref".
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

class UnitMenu : public BPopUpMenu {
public:
    // What its items send, with the unit's factor.
    static constexpr uint32 kUnitChosen = FourCC("unit");
    static constexpr const char* kUnitField = "Units Pref";  // double

    UnitMenu(const char* name, bool isRadioMode, bool isLabelFromMarked);
    explicit UnitMenu(BMessage* archive);

    [[nodiscard]] static BArchivable* Instantiate(BMessage* archive);

    // The factor of the marked unit; 1 if none is marked.
    [[nodiscard]] double Uval() const;
    // Marks the first unit with exactly this factor, else the one that is nearest by ratio, the
    // first of equals.
    void SetUval(double uval);

private:
    [[nodiscard]] UnitMenuItem* UnitAt(int32 index) const;
};

// The field of a unit menu in an entry, from its archive; one unit is marked. `label` is what a
// screen reader says. All fields have the same width, whatever their units. Null if the archive is
// none.
[[nodiscard]] BMenuField* MakeUnitField(const BMessage& archive, const char* label);
// Its menu, or null.
[[nodiscard]] UnitMenu* UnitMenuOf(const BMenuField* field);
