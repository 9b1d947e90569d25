#include "Platform/Application/FieldDescription.h"

#include <charconv>

std::string DescribeValue(bool value) {
    return value ? "true" : "false";
}

// The shortest form that reads back to the same number.
std::string DescribeValue(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string DescribeValue(int64 value) {
    return std::to_string(value);
}

std::string DescribeValue(int32 value) {
    return std::to_string(value);
}

std::string DescribeValue(rgb_color value) {
    std::string text;
    for (const int part : {value.red, value.green, value.blue, value.alpha})
        text += (text.empty() ? "" : ", ") + std::to_string(part);
    return text;
}

std::string DescribeValue(const std::string& value) {
    return value.empty() ? "empty" : '"' + value + '"';
}
