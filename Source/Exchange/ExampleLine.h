// One line of an example's text, read from left to right as words, numbers and quantities with a
// unit. What is between quotation marks is one word, in which two of them stand for one; a number
// sign outside them begins a comment. Every reader returns false when the text is not what it
// should be; Reason() then says why. Owned by the parser.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/GraphicsDefs.h"

class ProgramResources;
class UnitTable;

class ExampleLine {
public:
    enum class Quantity { kMass, kDistance, kSpeed, kTime };

    // The unit tables are those of the program's resources.
    explicit ExampleLine(const ProgramResources& resources) : resources_(resources) {}

    [[nodiscard]] bool SetTo(std::string_view text);
    [[nodiscard]] bool AtEnd() const { return rest_.empty(); }
    [[nodiscard]] const std::string& Reason() const { return reason_; }
    // The text that says why, and what fills its gaps.
    bool Fail(int32 text, std::initializer_list<std::string_view> values = {});

    // The next word, "" at the end of the line.
    std::string Next();
    // Takes the next word if it is this one.
    bool Skip(std::string_view word);
    // A name in quotation marks, not empty.
    bool ReadName(std::string* name);
    bool ReadNumber(double* value);
    bool ReadCount(int32 lowest, int32 highest, int32* value);
    // The factor of a unit: an abbreviation or a name of the table; "u", the natural unit, when
    // there is one; for masses also "m3/s2", a plain GM.
    bool ReadUnit(Quantity quantity, double* factor);
    // A number and its unit, in SI.
    bool ReadQuantity(Quantity quantity, double* value);
    bool ReadPositive(Quantity quantity, double* value);
    // Three numbers and their unit, in SI.
    bool ReadVector(Quantity quantity, ThreeVector* value);
    // Red, green and blue, 0 to 255.
    bool ReadColor(rgb_color* color);

    // Natural units are those in which the gravitational constant is 1: a mass as GM in m3/s2 and a
    // length in m; the others follow. 0: none.
    void SetNaturalUnits(double mass, double length);

private:
    std::string TakePlain();
    std::string TakeQuoted();
    [[nodiscard]] const UnitTable& Units(Quantity quantity) const;
    [[nodiscard]] double NaturalUnit(Quantity quantity) const;

    const ProgramResources& resources_;
    std::string_view rest_;  // begins with a word
    bool quoted_ = false;    // the last word was in quotation marks
    std::string reason_;
    double naturalMass_ = 0.0;
    double naturalLength_ = 0.0;
};
