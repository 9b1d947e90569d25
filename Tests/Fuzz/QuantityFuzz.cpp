// Reading quantities as users type them, and showing them.
#include <algorithm>
#include <cmath>

#include "Model/Units/QuantityText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Tests/Fuzz/FuzzKit.h"

namespace {

// Whatever is shown can be typed again and means the same, but for the last digit of the shortest
// text.
void CheckShown(const UnitTable& units, double value, const UnitInfo& unit) {
    constexpr double kLastDigit = 1e-15;
    const std::string shown = QuantityText(value, unit.factor);
    const UnitTable::Parsed read = units.Parse(shown + ' ' + unit.abbreviation);
    // The largest numbers have no text in the smallest units.
    if (!std::isfinite(value / unit.factor)) return;
    fuzz::Check(static_cast<bool>(read), "what is shown can be typed");
    const double slack = std::fabs(value) * kLastDigit + unit.factor * 5e-324;
    fuzz::Check(std::fabs(read.value - value) <= slack, "what is shown means the value");
}

// A field understands what a file says, and a comma for its point.
void CheckTyped(const UnitTable& units, std::string_view text, double plainFactor) {
    const UnitTable::Parsed parsed = units.Parse(text, plainFactor);
    const UnitTable::Parsed typed = units.ParseTyped(text, plainFactor);
    fuzz::Check(!typed || std::isfinite(typed.value), "what is typed is a number");
    if (!parsed) return;
    fuzz::Check(typed && typed.value == parsed.value, "a field reads what a file says");
    std::string comma(text);
    std::replace(comma.begin(), comma.end(), '.', ',');
    const UnitTable::Parsed same = units.ParseTyped(comma, plainFactor);
    fuzz::Check(same && same.value == parsed.value, "a comma is as good as a point");
    const bool isFraction = comma != text;
    fuzz::Check(!isFraction || !units.Parse(comma, plainFactor), "files have points alone");
}

void Read(const UnitTable& units, std::string_view text) {
    for (const double plainFactor : {1.0, 1.495978707e11}) {
        CheckTyped(units, text, plainFactor);
        const UnitTable::Parsed parsed = units.Parse(text, plainFactor);
        if (!parsed) continue;
        fuzz::Check(std::isfinite(parsed.value), "what is read is a number");
        static_cast<void>(print_double(parsed.value));
        if (parsed.unit != nullptr) CheckShown(units, parsed.value, *parsed.unit);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::TextOf(data, size);
    const ProgramResources& resources = fuzz::Resources();
    Read(resources.MassUnits(), text);
    Read(resources.DistanceUnits(), text);
    Read(resources.SpeedUnits(), text);
    Read(resources.TimeUnits(), text);
    return 0;
}
