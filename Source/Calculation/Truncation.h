// Numbers with a fraction as whole ones. No state, any thread.
#pragma once

#include <limits>

// Truncates toward zero; what the integer cannot hold becomes its least value, as the processor's
// own conversion has it.
template <class Integer>
Integer Truncate(float value) {
    constexpr auto kBound = -static_cast<float>(std::numeric_limits<Integer>::min());
    return value >= -kBound && value < kBound ? static_cast<Integer>(value)
                                              : std::numeric_limits<Integer>::min();
}
