// Texts in lines of a width.
#include "Simulation/LineBreaker.h"

#include <gtest/gtest.h>

#include <sstream>

#include "Platform/Interface/Handles/BFont.h"

namespace {

constexpr float kWidth = 120.0f;
// Letters side by side are a little wider or narrower than each alone.
constexpr float kKerning = 4.0f;

float WidthOf(const std::string& text) {
    return BFont().StringWidths({text}).front();
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line;
    return text;
}

void ExpectFull(const std::vector<std::string>& lines) {
    for (std::size_t i = 0; i < lines.size(); i++) {
        const std::string line = lines[i].substr(0, lines[i].find_last_not_of(' ') + 1);
        EXPECT_LE(WidthOf(line), kWidth + kKerning) << line;
        // The next line's first word would not have fitted.
        if (i + 1 == lines.size()) continue;
        const std::string word = lines[i + 1].substr(0, lines[i + 1].find(' '));
        EXPECT_GT(WidthOf(lines[i] + word), kWidth - kKerning) << line;
    }
}

}  // namespace

TEST(LineBreaker, BreaksAtSpacesAndWithinWhatIsLongerThanALine) {
    LineBreaker breaker;
    const std::string text =
        "Äußere Körper: the document "
        "/media/lessons/documents/simulations/of-many-bodies/planets.orvek "
        "could not be saved, since the disk is full, and is kept as a copy";
    const std::vector<std::string> lines = LinesOf(breaker.Broken(text, kWidth));
    EXPECT_GT(lines.size(), 4U);
    EXPECT_EQ(Joined(lines), text);
    ExpectFull(lines);
    EXPECT_EQ(breaker.Broken("short", kWidth), "short");
}

TEST(LineBreaker, KeepsFiguresWhole) {
    LineBreaker breaker;
    const std::string text = "10 bodies | order 16 | 2 000 steps/s | 3 yr/s | energy error 1e-16";
    const std::vector<std::string> lines = LinesOf(breaker.BrokenBetween(text, " | ", kWidth));
    EXPECT_GT(lines.size(), 1U);
    for (const std::string& line : lines) {
        EXPECT_LE(WidthOf(line), kWidth + kKerning) << line;
        EXPECT_FALSE(line.starts_with(" ") || line.ends_with(" ")) << line;
    }
}
