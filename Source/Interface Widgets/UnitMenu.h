// A pop-up menu of units, one of which is marked: the one that a quantity is shown in. Rules as for
// BMenu.
#pragma once

#include "Platform/Interface/Handles/BPopUpMenu.h"

class UnitMenuItem;

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
