#include "Exchange/ExampleLine.h"

#include <charconv>
#include <cmath>

#include "Resources/Exchange.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view WithoutLeadingBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

bool ParseNumber(std::string_view word, double* value) {
    if (word.starts_with('+')) word.remove_prefix(1);
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, *value);
    return error == std::errc() && stop == end && std::isfinite(*value);
}

}  // namespace

bool ExampleLine::SetTo(std::string_view text) {
    bool inQuotes = false;
    std::size_t end = 0;
    while (end < text.size() && (inQuotes || text[end] != '#')) {
        if (text[end] == '"') inQuotes = !inQuotes;
        ++end;
    }
    rest_ = WithoutLeadingBlanks(text.substr(0, end));
    return !inQuotes || Fail(kTextQuoteOpen);
}

bool ExampleLine::Fail(int32 text, std::initializer_list<std::string_view> values) {
    reason_ = FillIn(resources_.InterfaceLabel(text), values);
    return false;
}

std::string ExampleLine::Next() {
    quoted_ = rest_.starts_with('"');
    std::string word = quoted_ ? TakeQuoted() : TakePlain();
    rest_ = WithoutLeadingBlanks(rest_);
    return word;
}

std::string ExampleLine::TakePlain() {
    const std::size_t end = std::min(rest_.find_first_of(" \t\r\""), rest_.size());
    std::string word(rest_.substr(0, end));
    rest_.remove_prefix(end);
    return word;
}

std::string ExampleLine::TakeQuoted() {
    std::string word;
    for (bool isFirst = true; rest_.starts_with('"'); isFirst = false) {
        if (!isFirst) word += '"';
        rest_.remove_prefix(1);
        const std::size_t end = std::min(rest_.find('"'), rest_.size());
        word += rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
    }
    return word;
}

bool ExampleLine::Skip(std::string_view word) {
    if (rest_.substr(0, rest_.find_first_of(" \t\r\"")) != word) return false;
    Next();
    return true;
}

bool ExampleLine::ReadName(std::string* name) {
    *name = Next();
    return (quoted_ && !name->empty()) || Fail(kTextNameMissing);
}

bool ExampleLine::ReadNumber(double* value) {
    if (AtEnd()) return Fail(kTextNumberMissing);
    const std::string word = Next();
    return ParseNumber(word, value) || Fail(kTextWordNoNumber, {word});
}

bool ExampleLine::ReadCount(int32 lowest, int32 highest, int32* value) {
    double number = 0.0;
    if (!ReadNumber(&number)) return false;
    if (number < lowest || number > highest || number != std::floor(number))
        return Fail(kTextNotACount, {std::to_string(lowest), std::to_string(highest)});
    *value = static_cast<int32>(number);
    return true;
}

bool ExampleLine::ReadUnit(Quantity quantity, double* factor) {
    if (AtEnd()) return Fail(kTextUnitMissing);
    const std::string word = Next();
    if (word == "u" && naturalMass_ > 0.0) {
        *factor = NaturalUnit(quantity);
        return true;
    }
    if (word == "m3/s2" && quantity == Quantity::kMass) {
        *factor = 1.0;
        return true;
    }
    const std::optional<double> unit = Units(quantity).FactorOf(word);
    if (!unit) return Fail(kTextUnitUnknown, {word});
    *factor = *unit;
    return true;
}

bool ExampleLine::ReadQuantity(Quantity quantity, double* value) {
    double factor = 0.0;
    if (!ReadNumber(value) || !ReadUnit(quantity, &factor)) return false;
    *value *= factor;
    return true;
}

bool ExampleLine::ReadPositive(Quantity quantity, double* value) {
    if (!ReadQuantity(quantity, value)) return false;
    return *value > 0.0 || Fail(kTextNotPositive);
}

bool ExampleLine::ReadVector(Quantity quantity, ThreeVector* value) {
    double factor = 0.0;
    if (!ReadNumber(&value->x) || !ReadNumber(&value->y) || !ReadNumber(&value->z) ||
        !ReadUnit(quantity, &factor))
        return false;
    *value *= factor;
    return true;
}

bool ExampleLine::ReadColor(rgb_color* color) {
    int32 parts[3];
    for (int32& part : parts)
        if (!ReadCount(0, 255, &part)) return false;
    *color = {static_cast<uint8>(parts[0]), static_cast<uint8>(parts[1]),
              static_cast<uint8>(parts[2]), 255};
    return true;
}

void ExampleLine::SetNaturalUnits(double mass, double length) {
    naturalMass_ = mass;
    naturalLength_ = length;
}

const UnitTable& ExampleLine::Units(Quantity quantity) const {
    switch (quantity) {
        case Quantity::kMass:
            return resources_.MassUnits();
        case Quantity::kDistance:
            return resources_.DistanceUnits();
        case Quantity::kSpeed:
            return resources_.SpeedUnits();
        case Quantity::kTime:
            break;
    }
    return resources_.TimeUnits();
}

double ExampleLine::NaturalUnit(Quantity quantity) const {
    // With the gravitational constant in the mass, v2 ~ M / L and t = L / v.
    switch (quantity) {
        case Quantity::kMass:
            return naturalMass_;
        case Quantity::kDistance:
            return naturalLength_;
        case Quantity::kSpeed:
            return std::sqrt(naturalMass_ / naturalLength_);
        case Quantity::kTime:
            break;
    }
    return naturalLength_ * std::sqrt(naturalLength_ / naturalMass_);
}
