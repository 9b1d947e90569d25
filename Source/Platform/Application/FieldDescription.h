// What is known of a field without a record that has it: a row of the tables in the description of
// the document format. A plain value.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

struct FieldDescription {
    std::string name;
    type_code type = 0;
    std::string count;        // how many items it has
    std::string whenMissing;  // what a reader takes then
    std::string meaning;      // with the unit, and the accepted range
};

using FieldDescriptions = std::vector<FieldDescription>;

// Values as the tables show them.
[[nodiscard]] std::string DescribeValue(bool value);
[[nodiscard]] std::string DescribeValue(double value);
[[nodiscard]] std::string DescribeValue(int64 value);
[[nodiscard]] std::string DescribeValue(int32 value);
[[nodiscard]] std::string DescribeValue(rgb_color value);
[[nodiscard]] std::string DescribeValue(const std::string& value);
