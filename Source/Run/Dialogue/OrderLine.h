// One order of another program's: a line with a JSON object of one member, whose value is a string
// or a number. A plain value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct OrderLine {
    std::string name;
    std::string value;

    // Nothing for any other text.
    [[nodiscard]] static std::optional<OrderLine> From(std::string_view line);
};
