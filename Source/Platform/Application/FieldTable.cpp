#include "Platform/Application/FieldTable.h"

#include <algorithm>

void DescribeField(FieldDescriptions* into, const char* name, type_code type, FieldItems items,
                   const std::string& whenMissing, const char* meaning) {
    const std::string count = (items.isOptional ? "0, " : "") + std::to_string(items.count);
    const auto field = std::ranges::find(*into, name, &FieldDescription::name);
    if (field == into->end())
        into->push_back({name, type, count, whenMissing, meaning});
    else
        field->count = count;
}

void DescribeField(FieldDescriptions* into, const char* name, type_code type,
                   std::string_view count, std::string_view whenMissing, std::string_view meaning) {
    into->push_back(
        {name, type, std::string(count), std::string(whenMissing), std::string(meaning)});
}
