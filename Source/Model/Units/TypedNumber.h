// Numbers as people type them, whatever their language: a point or a comma before the fraction, and
// spaces between groups of three digits ("384 400", "3,84e5", "1 234.5"). No state, any thread.
#pragma once

#include <optional>
#include <string_view>

// Takes the number that the text begins with, and the spaces around it. Nothing, and the text as it
// was, if it begins with none, if the number is not finite, or if what follows may belong to it
// ("1,234.5", "38 44"): then nobody can tell what is meant.
[[nodiscard]] std::optional<double> TakeTypedNumber(std::string_view* text);
