// Numbers as the user reads them: with a decimal point whatever the locale, an exponent only where
// there would be a row of zeros, no digit too many. No state, any thread.
#pragma once

#include <string>

inline constexpr int kReadableDigits = 10;

// At most so many significant digits. Empty for what is no number.
[[nodiscard]] std::string print_double(double value, int digits = kReadableDigits);

// Thousands apart, by a narrow space that no line is broken at: the same in every language.
[[nodiscard]] std::string Grouped(std::string digits);

// The shortest number that read in this unit (UnitTable::Parse) gives the value again, to the bit;
// where none does, the one that comes nearest. `value` in base units. Empty for what is no number.
[[nodiscard]] std::string QuantityText(double value, double uval);
