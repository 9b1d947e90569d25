#include "Run/TextColumns.h"

#include <algorithm>

std::size_t ColumnsOf(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (c & 0xc0) != 0x80; }));
}

std::string InColumns(const std::vector<std::vector<std::string>>& lines) {
    std::vector<std::size_t> widths(lines.empty() ? 0 : lines[0].size());
    for (const auto& line : lines)
        for (std::size_t i = 0; i < widths.size(); i++)
            widths[i] = std::max(widths[i], ColumnsOf(line[i]));
    std::string text;
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < widths.size(); i++) {
            const std::string blanks(widths[i] - ColumnsOf(line[i]), ' ');
            text += i == 0 ? line[i] + blanks : "  " + blanks + line[i];
        }
        text += '\n';
    }
    return text;
}
