// The units of one kind of quantity, in the order in which menus show them. Filled at start-up from
// the program's resources, read-only afterwards: any thread may call.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class BResources;

// One unit that a quantity can be shown in.
struct UnitInfo {
    std::string name;
    std::string abbreviation;
    // One such unit in SI units (masses as GM in m3/s2); positive and finite.
    double factor = 1.0;
};

class UnitTable {
public:
    UnitTable() = default;
    // Rows are triples of string resources from `base` upward: name, abbreviation and factor. The
    // table ends at the first incomplete row. Pairs from `base` + 50 upward are spellings: a text,
    // and what one such unit is in others ("1 hr").
    UnitTable(const BResources& resources, int32 base);

    // Names the units as another language does, by the same numbers; what it says from `base` + 50
    // upward are further spellings. The names that the units had are still understood.
    void Translate(const BResources& translation, int32 base);

    // A factor that is not positive and finite becomes 1.
    void Add(std::string name, std::string abbreviation, double factor);
    // What users may write for a unit as well, or a unit that no menu has. One without a factor
    // that is positive and finite is left out.
    void AddSpelling(std::string text, double factor);
    [[nodiscard]] const std::vector<UnitInfo>& Rows() const { return rows_; }

    // The row whose factor is nearest to `uval` by ratio, the first of equals; null for an empty
    // table.
    [[nodiscard]] const UnitInfo* FindNearest(double uval) const;
    // The first row with exactly this factor, or null.
    [[nodiscard]] const UnitInfo* FindExact(double uval) const;
    // The factor of the unit with this abbreviation, name or spelling, as it is written or, if only
    // one unit suits, in other capitals; else nothing.
    [[nodiscard]] std::optional<double> FactorOf(std::string_view text) const;
    // The nearest row's abbreviation; "X" for an empty table.
    [[nodiscard]] std::string Abbreviation(double uval) const;
    // All units that can be written, each once and short, the rows first.
    [[nodiscard]] std::vector<std::string_view> Abbreviations() const;

    enum class ParseError { kNone, kNotANumber, kUnknownUnit };
    struct Parsed {
        ParseError error = ParseError::kNone;
        double value = 0.0;  // in SI units
        // The one written; null for a plain number and for a unit that no row has.
        const UnitInfo* unit = nullptr;

        explicit operator bool() const { return error == ParseError::kNone; }
    };
    // Reads a finite number, with a decimal point whatever the locale, and the unit behind it if
    // any: "384400 km", "1.5 Solar Masses". `plainFactor`: the unit of a number without one. For
    // command lines and files.
    [[nodiscard]] Parsed Parse(std::string_view text, double plainFactor = 1.0) const;
    // The same for what is typed into a field: "384 400 km", "1,5 Solar Masses" (TypedNumber.h).
    [[nodiscard]] Parsed ParseTyped(std::string_view text, double plainFactor = 1.0) const;

private:
    void ReadSpellings(const BResources& resources, int32 base);

    struct Spelling {
        std::string text;
        double factor;
    };

    // `unit`: what stands behind the number; may be empty.
    [[nodiscard]] Parsed ValueOf(double number, std::string_view unit, double plainFactor) const;

    std::vector<UnitInfo> rows_;
    std::vector<Spelling> spellings_;
};

// The units that quantities are shown in where a document names none: factors in SI units (masses
// as GM). Set at start-up by whoever reads the user's preferences, read-only while documents are
// open.
extern double POSITION_UVAL_PREF;  // m
extern double SPEED_UVAL_PREF;     // m/s
extern double MASS_UVAL_PREF;      // m3/s2
extern double RADIUS_UVAL_PREF;    // m
extern double TIME_UVAL_PREF;      // s
