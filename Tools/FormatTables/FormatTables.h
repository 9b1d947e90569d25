// The tables of fields in the description of the document format. No state.
#pragma once

#include <optional>
#include <string>

// The description with every table made anew; none if it asks for one that there is not. A table
// stands between a line "<!-- fields: NAME -->" and a line "<!-- end of fields -->".
[[nodiscard]] std::optional<std::string> WithFieldTables(const std::string& description);
