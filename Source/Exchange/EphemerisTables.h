// Tables of vectors or osculating elements as ephemeris services print them: a head that says what
// the table is of, and a block between "$$SOE" and "$$EOE" with a moment and its values, labelled
// ("X = 1.2E+08") or separated by commas. A text may have several tables, one for each body; of
// several moments the first is read. All must have the same centre, reference frame and moment, in
// barycentric dynamical time. Bodies are placed about the centre; one whose GM no head tells is
// left for the caller to ask about.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Exchange/BodyReader.h"

class TextLines;

class EphemerisTables {
public:
    explicit EphemerisTables(const ProgramResources& resources) : resources_(resources) {}

    [[nodiscard]] static bool Are(std::string_view text);
    [[nodiscard]] std::optional<ImportFault> Read(std::string_view text, ReadBodies* result);

private:
    using Wrong = std::optional<std::string>;

    // What the head of a table says.
    struct Head {
        std::string body;
        std::string centre;
        std::string frame;
        std::string timeScale;
        std::optional<double> gm;          // of the body, m3/s2
        std::optional<double> orbitalGM;   // by which its elements were found, m3/s2
        double length = 0.0;               // of the unit, m
        double time = 0.0;                 // s
        std::vector<std::string> columns;  // of values that are separated by commas
    };

    Wrong ReadHeadLine(std::string_view line);
    Wrong ReadUnits(std::string_view value);
    Wrong CheckHead() const;
    // Up to the end of the block.
    Wrong ReadBlock(TextLines* lines);
    Wrong ReadLabelled(std::string_view line);
    Wrong ReadSeparated(std::string_view line);
    Wrong AddBody(ReadBodies* result, int line);
    Wrong SetState(ExampleSystem* body) const;
    Wrong SetElements(ExampleSystem* body) const;
    Wrong CheckMoment(ReadBodies* result) const;
    [[nodiscard]] std::string Problem(int32 text, std::string_view what = {}) const;

    const ProgramResources& resources_;
    Head head_;
    std::optional<Head> first_;             // of the table before
    std::map<std::string, double> values_;  // of the first moment of a table, by label
    double moment_ = 0.0;                   // Julian date
};
