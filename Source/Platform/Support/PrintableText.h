// Names and paths that come from elsewhere, made fit to be printed. No state, any thread.
#pragma once

#include <string>
#include <string_view>

// `text` with its control characters written out ("\\n", "\\t", "\\x1b"): it can neither break a
// line nor steer a terminal. Text without any is given back as it is, backslashes too, so that
// nothing is lost by doing it twice.
[[nodiscard]] std::string Printable(std::string_view text);
