// Breaks texts into lines no longer than a width, in the program's font. Asks the window server for
// the width of each letter once: lines are broken many times a second, and must not wait for it.
#pragma once

#include <string>
#include <unordered_map>

class LineBreaker {
public:
    // Asks for the widths of these letters and of those of plain text, so that it is done.
    void Learn(const std::string& text);
    // Breaks the text at its spaces, and within a word (a path) that is longer than a line.
    [[nodiscard]] std::string Broken(const std::string& text, float width);
    // Breaks it between figures, and within one that is longer than a line.
    [[nodiscard]] std::string BrokenBetween(const std::string& text, const std::string& separator,
                                            float width);

private:
    [[nodiscard]] float WidthOf(const std::string& text);
    void Ask(const std::string& text);

    std::unordered_map<std::string, float> widths_;  // by letter
};
