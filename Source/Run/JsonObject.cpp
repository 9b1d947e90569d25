#include "Run/JsonObject.h"

#include <cmath>

#include "Platform/Support/Utf8.h"
#include "Run/NumberText.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

uint8 Byte(char c) {
    return static_cast<uint8>(c);
}

void AppendCode(std::string* to, uint8 code) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    *to += "\\u00";
    *to += kDigits[code >> 4];
    *to += kDigits[code & 15];
}

void AppendEscaped(std::string* to, char c) {
    if (c == '"' || c == '\\') {
        *to += '\\';
        *to += c;
    } else if (Byte(c) < 0x20 || Byte(c) == 0x7F) {
        AppendCode(to, Byte(c));
    } else {
        *to += c;
    }
}

}  // namespace

void JsonObject::Add(std::string_view name, std::string_view value) {
    AddJson(name, JsonString(value));
}

void JsonObject::Add(std::string_view name, int64 value) {
    AddJson(name, std::to_string(value));
}

void JsonObject::Add(std::string_view name, double value) {
    AddJson(name, std::isfinite(value) ? ExactText(value) : "null");
}

void JsonObject::Add(std::string_view name, const std::optional<double>& value) {
    if (value)
        Add(name, *value);
    else
        AddJson(name, "null");
}

void JsonObject::AddJson(std::string_view name, std::string_view json) {
    if (!members_.empty()) members_ += ',';
    members_ += JsonString(name);
    members_ += ':';
    members_ += json;
}

std::string JsonString(std::string_view text) {
    std::string quoted = "\"";
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        if (length == 0)
            quoted += kReplacement;
        else if (length == 1)
            AppendEscaped(&quoted, text[0]);
        else if (length == 2 && Byte(text[0]) == 0xC2 && Byte(text[1]) < 0xA0)
            AppendCode(&quoted, Byte(text[1]));  // a control character beyond ASCII
        else
            quoted += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return quoted + '"';
}
