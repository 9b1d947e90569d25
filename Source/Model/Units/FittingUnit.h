// The unit that a value is best read in where nobody has chosen one. No state, any thread.
#pragma once

#include <string>

#include "Model/Units/UnitTable.h"

// The largest unit of which there is one at least, else the smallest; null for an empty table.
[[nodiscard]] const UnitInfo* FittingUnit(const UnitTable& units, double value);
// The unit of the user's (in SI units), or a thousand or one of the SI's where the value is far
// smaller: of lengths and speeds.
[[nodiscard]] double SmallerUnit(double value, double uval);
// The value in the fitting one, "3.2 km". `digits`: significant ones.
[[nodiscard]] std::string InFittingUnit(const UnitTable& units, double value, int digits);
