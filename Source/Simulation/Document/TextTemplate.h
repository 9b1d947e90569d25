// Texts with gaps: translators may reorder them. No state, any thread.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

// `text` with "%1" ... "%9" replaced by the values in order, and "%%" by a percent sign. A gap
// without a value becomes nothing. Control characters in the values are written out.
[[nodiscard]] std::string FillIn(std::string_view text,
                                 std::initializer_list<std::string_view> values);
