// format-tables [--check] DESCRIPTION: makes the tables of fields in the description of the
// document format anew, or tells whether they are as they should be.
#include <fstream>
#include <iostream>
#include <iterator>

#include "Tools/FormatTables/FormatTables.h"

int main(int count, char** arguments) {
    const bool checks = count == 3 && std::string(arguments[1]) == "--check";
    if (count != 2 && !checks) {
        std::cerr << "Usage: format-tables [--check] DESCRIPTION\n";
        return 2;
    }
    const char* const path = arguments[count - 1];
    std::ifstream in(path);
    const std::string before{std::istreambuf_iterator<char>(in), {}};
    const auto after = WithFieldTables(before);
    if (!in.is_open() || !after) {
        std::cerr << path << ": cannot be read, or has a table of unknown fields\n";
        return 1;
    }
    if (*after == before) return 0;
    if (checks) {
        std::cerr << path << " is not up to date: ninja file_format\n";
        return 1;
    }
    return (std::ofstream(path) << *after).flush() ? 0 : 1;
}
