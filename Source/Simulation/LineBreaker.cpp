#include "Simulation/LineBreaker.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "Platform/Interface/Handles/BFont.h"

namespace {

// The letter that begins there, in the bytes of its code.
std::string LetterAt(const std::string& text, std::size_t at) {
    std::size_t end = at + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
        end++;
    return text.substr(at, end - at);
}

}  // namespace

void LineBreaker::Learn(const std::string& text) {
    std::string letters = text;
    for (char letter = ' '; letter <= '~'; letter++)
        letters += letter;
    Ask(letters);
}

std::string LineBreaker::Broken(const std::string& text, float width) {
    Ask(text);
    std::string done;
    std::string line;
    float length = 0.0f;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t before = line.size();
        const std::string letter = LetterAt(text, at);
        line += letter;
        length += widths_[letter];
        at += letter.size();
        if (length <= width || line.find_first_not_of(' ') == std::string::npos) continue;
        const std::size_t space = line.find_last_of(' ');
        const std::size_t cut = space != std::string::npos ? space + 1 : before;
        if (cut == 0 || cut == line.size()) continue;
        done += line.substr(0, cut) + '\n';
        line.erase(0, cut);
        length = WidthOf(line);
    }
    return done + line;
}

std::string LineBreaker::BrokenBetween(const std::string& text, const std::string& separator,
                                       float width) {
    std::string done;
    std::string line;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        const std::string figure = text.substr(at, end - at);
        at = end + separator.size();
        std::string longer = line;
        if (!line.empty()) longer += separator;
        longer += figure;
        if (!line.empty() && WidthOf(longer) > width) {
            done += Broken(line, width) + '\n';
            line = figure;
        } else {
            line = std::move(longer);
        }
    }
    return done + Broken(line, width);
}

float LineBreaker::WidthOf(const std::string& text) {
    Ask(text);
    float width = 0.0f;
    for (std::size_t at = 0; at < text.size();) {
        const std::string letter = LetterAt(text, at);
        width += widths_[letter];
        at += letter.size();
    }
    return width;
}

void LineBreaker::Ask(const std::string& text) {
    std::vector<std::string> letters;
    for (std::size_t at = 0; at < text.size(); at += letters.back().size())
        letters.push_back(LetterAt(text, at));
    std::erase_if(letters, [this](const std::string& letter) { return widths_.contains(letter); });
    if (letters.empty()) return;
    const std::vector<float> widths = BFont().StringWidths(letters);
    for (std::size_t i = 0; i < widths.size(); i++)
        widths_[letters[i]] = widths[i];
}
