#include "Run/CsvText.h"

#include <charconv>

#include "Platform/Support/PrintableText.h"

namespace {

template <typename Number>
void Append(std::string* to, Number value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value);
    to->append(digits, end.ptr);
}

}  // namespace

void AppendCsv(std::string* to, double number) {
    Append(to, number);
}

void AppendCsv(std::string* to, int64 number) {
    Append(to, number);
}

std::string CsvName(const std::string& name) {
    std::string printable = Printable(name);
    if (printable.find_first_of(",\"") == std::string::npos) return printable;
    std::string quoted = "\"";
    for (const char c : printable) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}
