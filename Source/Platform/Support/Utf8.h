// How characters are coded in UTF-8. No state, any thread.
#pragma once

#include <cstddef>
#include <string_view>

// Bytes of the well-formed character at the start of a text that is not empty; 0: there is none.
[[nodiscard]] std::size_t Utf8Length(std::string_view text);
