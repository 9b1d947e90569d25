// Builds one JSON object, member by member. A plain value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Support/SupportDefs.h"

class JsonObject {
public:
    void Add(std::string_view name, std::string_view value);
    void Add(std::string_view name, int64 value);
    // The shortest number that reads back to the same bits; null when there is none or it is not
    // finite.
    void Add(std::string_view name, double value);
    void Add(std::string_view name, const std::optional<double>& value);
    // A value that is JSON already.
    void AddJson(std::string_view name, std::string_view json);

    [[nodiscard]] std::string Text() const { return '{' + members_ + '}'; }

private:
    std::string members_;
};

// A JSON string; bytes that are not UTF-8 become the replacement character.
[[nodiscard]] std::string JsonString(std::string_view text);
