#include "Model/Units/UnitTable.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

#include "Model/Units/TypedNumber.h"
#include "Platform/Storage/BResources.h"

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr int32 kTextsPerRow = 3;
constexpr int32 kSpellings = 50;  // from a table's base to its spellings

std::string_view Trim(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

bool IsUnit(double factor) {
    return factor > 0.0 && std::isfinite(factor);
}

// Takes the number that the text begins with; nothing if it begins with none or is not finite.
std::optional<double> TakeNumber(std::string_view* text) {
    std::string_view digits = *text;
    if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
    double number = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
    digits.remove_prefix(static_cast<std::size_t>(end - digits.data()));
    *text = digits;
    return number;
}

// 0 for what is no number.
double NumberOf(const std::string& text) {
    std::string_view rest = Trim(text);
    const std::optional<double> number = TakeNumber(&rest);
    return number && rest.empty() ? *number : 0.0;
}

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualButForCapitals(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Lower(x) == Lower(y); });
}

}  // namespace

UnitTable::UnitTable(const BResources& resources, int32 base) {
    for (int32 id = base;; id += kTextsPerRow) {
        std::optional<std::string> name = resources.LoadString(id);
        std::optional<std::string> abbreviation = resources.LoadString(id + 1);
        const std::optional<std::string> factor = resources.LoadString(id + 2);
        if (!name || !abbreviation || !factor) break;
        Add(*std::move(name), *std::move(abbreviation), NumberOf(*factor));
    }
    ReadSpellings(resources, base);
}

void UnitTable::Translate(const BResources& translation, int32 base) {
    int32 id = base;
    for (UnitInfo& row : rows_) {
        std::optional<std::string> name = translation.LoadString(id);
        id += kTextsPerRow;
        if (!name || name->empty() || name == row.name) continue;
        std::swap(row.name, *name);
        AddSpelling(*std::move(name), row.factor);
    }
    ReadSpellings(translation, base);
}

void UnitTable::ReadSpellings(const BResources& resources, int32 base) {
    for (int32 id = base + kSpellings;; id += 2) {
        std::optional<std::string> text = resources.LoadString(id);
        const std::optional<std::string> meaning = resources.LoadString(id + 1);
        if (!text || !meaning) return;
        AddSpelling(*std::move(text), Parse(*meaning).value);
    }
}

void UnitTable::Add(std::string name, std::string abbreviation, double factor) {
    rows_.push_back({std::move(name), std::move(abbreviation), IsUnit(factor) ? factor : 1.0});
}

void UnitTable::AddSpelling(std::string text, double factor) {
    if (IsUnit(factor)) spellings_.push_back({std::move(text), factor});
}

const UnitInfo* UnitTable::FindNearest(double uval) const {
    const UnitInfo* nearest = nullptr;
    double least = 0.0;
    for (const UnitInfo& row : rows_) {
        const double ratio = row.factor < uval ? uval / row.factor : row.factor / uval;
        if (nearest == nullptr || ratio < least) {
            nearest = &row;
            least = ratio;
        }
    }
    return nearest;
}

const UnitInfo* UnitTable::FindExact(double uval) const {
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [&](const auto& row) { return row.factor == uval; });
    return found == rows_.end() ? nullptr : &*found;
}

std::optional<double> UnitTable::FactorOf(std::string_view text) const {
    for (const UnitInfo& row : rows_)
        if (text == row.abbreviation || text == row.name) return row.factor;
    for (const Spelling& spelling : spellings_)
        if (text == spelling.text) return spelling.factor;
    std::optional<double> found;
    bool isOne = true;
    const auto look = [&](std::string_view candidate, double factor) {
        if (!EqualButForCapitals(text, candidate)) return;
        isOne = isOne && found.value_or(factor) == factor;
        found = factor;
    };
    for (const UnitInfo& row : rows_) {
        look(row.abbreviation, row.factor);
        look(row.name, row.factor);
    }
    for (const Spelling& spelling : spellings_)
        look(spelling.text, spelling.factor);
    return isOne ? found : std::nullopt;
}

std::string UnitTable::Abbreviation(double uval) const {
    const UnitInfo* const row = FindNearest(uval);
    return row == nullptr ? "X" : row->abbreviation;
}

std::vector<std::string_view> UnitTable::Abbreviations() const {
    std::vector<std::string_view> all;
    std::vector<double> factors;
    const auto add = [&](std::string_view text, double factor) {
        if (std::find(factors.begin(), factors.end(), factor) != factors.end()) return;
        all.push_back(text);
        factors.push_back(factor);
    };
    for (const UnitInfo& row : rows_)
        add(row.abbreviation, row.factor);
    for (const Spelling& spelling : spellings_)
        add(spelling.text, spelling.factor);
    return all;
}

UnitTable::Parsed UnitTable::Parse(std::string_view text, double plainFactor) const {
    text = Trim(text);
    const std::optional<double> number = TakeNumber(&text);
    // Another digit group, as in "1,5" or "1.2.3", is no unit.
    constexpr std::string_view kNumberGoesOn = "0123456789.,+-";
    if (!number || (!text.empty() && kNumberGoesOn.find(text[0]) != std::string_view::npos))
        return {ParseError::kNotANumber, 0.0, nullptr};
    return ValueOf(*number, Trim(text), plainFactor);
}

UnitTable::Parsed UnitTable::ParseTyped(std::string_view text, double plainFactor) const {
    text = Trim(text);
    const std::optional<double> number = TakeTypedNumber(&text);
    if (!number) return {ParseError::kNotANumber, 0.0, nullptr};
    return ValueOf(*number, Trim(text), plainFactor);
}

UnitTable::Parsed UnitTable::ValueOf(double number, std::string_view unit,
                                     double plainFactor) const {
    const std::optional<double> factor = unit.empty() ? plainFactor : FactorOf(unit);
    if (!factor) return {ParseError::kUnknownUnit, 0.0, nullptr};
    const double value = number * *factor;
    if (!std::isfinite(value)) return {ParseError::kNotANumber, 0.0, nullptr};
    return {ParseError::kNone, value, unit.empty() ? nullptr : FindExact(*factor)};
}

double POSITION_UVAL_PREF = 149597870660.0;  // astronomical unit
double SPEED_UVAL_PREF = 1731456.8363;       // astronomical unit per day
double MASS_UVAL_PREF = 1.3271244e20;        // solar mass
double RADIUS_UVAL_PREF = 6378137.0;         // Earth radius
double TIME_UVAL_PREF = 31556925.2;          // year
