// The units of one kind of quantity, in the order in which menus show them. Filled at start-up from
// the program's resources, read-only afterwards: any thread may call.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SupportDefs.h"
#include "UnitInfo.h"

class BResources;

class UnitTable {
public:
    UnitTable() = default;
    // Rows are triples of string resources from `base` upward: name, abbreviation and factor. The
    // table ends at the first incomplete row.
    UnitTable(const BResources& resources, int32 base);

    // A factor that is not positive and finite becomes 1.
    void Add(std::string name, std::string abbreviation, double factor);
    [[nodiscard]] const std::vector<UnitInfo>& Rows() const { return rows_; }

    // The row whose factor is nearest to `uval` by ratio, the first of equals; null for an empty
    // table.
    [[nodiscard]] const UnitInfo* FindNearest(double uval) const;
    // The first row with exactly this factor, or null.
    [[nodiscard]] const UnitInfo* FindExact(double uval) const;
    // The row with this abbreviation or name, as it is written or, if only one row suits, in other
    // capitals; else null.
    [[nodiscard]] const UnitInfo* Find(std::string_view text) const;
    // The nearest row's abbreviation; "X" for an empty table.
    [[nodiscard]] std::string Abbreviation(double uval) const;

    enum class ParseError { kNone, kNotANumber, kUnknownUnit };
    struct Parsed {
        ParseError error = ParseError::kNone;
        double value = 0.0;              // in SI units
        const UnitInfo* unit = nullptr;  // the one written, null for a plain number

        explicit operator bool() const { return error == ParseError::kNone; }
    };
    // Reads a finite number, with a decimal point whatever the locale, and the unit behind it if
    // any: "384400 km", "1.5 Solar Masses". `plainFactor`: the unit of a number without one.
    [[nodiscard]] Parsed Parse(std::string_view text, double plainFactor = 1.0) const;

private:
    std::vector<UnitInfo> rows_;
};
