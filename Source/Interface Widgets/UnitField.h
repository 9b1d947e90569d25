// The field of a unit menu in an entry. No state; rules as for BView.
#pragma once

#include "Platform/Support/SupportDefs.h"

class BMenuField;
class BMessage;
class UnitMenu;

// From its archive; one unit is marked. `label` is what a screen reader says. All fields have the
// same width, whatever their units. Null if the archive is none.
[[nodiscard]] BMenuField* MakeUnitField(const BMessage& archive, const char* label);
// Its menu, or null.
[[nodiscard]] UnitMenu* UnitMenuOf(const BMenuField* field);
