// The lines of a text one after the other, without blanks around them. No state beyond its place
// in the text, which must outlive it.
#pragma once

#include <algorithm>
#include <string_view>

class TextLines {
public:
    explicit TextLines(std::string_view text) : rest_(text) {}

    // False at the end of the text.
    bool Next() {
        if (rest_.empty()) return false;
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        line_ = Trim(rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        number_++;
        return true;
    }
    [[nodiscard]] std::string_view Line() const { return line_; }
    [[nodiscard]] int Number() const { return number_; }

    [[nodiscard]] static std::string_view Trim(std::string_view text) {
        constexpr std::string_view kBlanks = " \t\r";
        const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
        text.remove_prefix(begin);
        return text.substr(0, text.find_last_not_of(kBlanks) + 1);
    }

private:
    std::string_view rest_;
    std::string_view line_;
    int number_ = 0;
};
