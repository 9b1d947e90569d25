// Tables of text for a terminal. No state, any thread.
#pragma once

#include <string>
#include <vector>

// Columns of a text in UTF-8, where only its leading bytes count.
[[nodiscard]] std::size_t ColumnsOf(const std::string& text);
// The lines' cells below each other, two blanks apart: the first column begins at the left, the
// others end at the right. All lines have as many cells as the first.
[[nodiscard]] std::string InColumns(const std::vector<std::vector<std::string>>& lines);
