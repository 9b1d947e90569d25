// Numbers as text, the same in every locale. No state, any thread.
#pragma once

#include <string>

// At most so many significant digits, with an exponent where that is shorter.
[[nodiscard]] std::string RoundedText(double value, int digits);
// The shortest decimal that reads back to the same bits.
[[nodiscard]] std::string ExactText(double value);
// Hours, minutes and seconds of real time: "1:02:03", "2:03".
[[nodiscard]] std::string ClockText(double seconds);
// A whole number as far as it is worth telling: three significant digits, at least the units.
[[nodiscard]] std::string RateText(double perSecond);
