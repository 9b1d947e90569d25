#include "Exchange/CsvBodies.h"

#include <charconv>
#include <cmath>

#include "Exchange/TextLines.h"
#include "Exchange/TodaysUnits.h"
#include "Resources/Exchange.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// The largest of the two units that follow the program's gravitational constant.
constexpr double kKilogram = 6.672e-11;

// The values of a line; those in quotation marks may hold commas, and two marks for one.
std::vector<std::string> Split(std::string_view line) {
    std::vector<std::string> values(1);
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); i++) {
        const char c = line[i];
        if (c == '"' && isQuoted && line.substr(i, 2) == "\"\"")
            values.back() += line[i++];
        else if (c == '"')
            isQuoted = !isQuoted;
        else if (c == ',' && !isQuoted)
            values.emplace_back();
        else
            values.back() += c;
    }
    return values;
}

bool ParseNumber(std::string_view text, double* number) {
    if (text.starts_with('+')) text.remove_prefix(1);
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, *number);
    return read.ec == std::errc() && read.ptr == end && std::isfinite(*number);
}

template <double ThreeVector::*component>
void SetPlace(ExampleSystem* body, double value) {
    if (!body->position) body->position.emplace();
    (*body->position).*component = value;
}

template <double ThreeVector::*component>
void SetSpeed(ExampleSystem* body, double value) {
    if (!body->velocity) body->velocity.emplace();
    (*body->velocity).*component = value;
}

enum class Kind { kName, kTime, kMass, kGM, kLength, kSpeed };

}  // namespace

struct CsvBodies::Quantity {
    std::string_view name;
    Kind kind;
    bool isNeeded;
    void (*set)(ExampleSystem* body, double value);
};

const CsvBodies::Quantity CsvBodies::kQuantities[] = {
    {"name", Kind::kName, true, nullptr},
    {"t", Kind::kTime, false, nullptr},
    {"gm", Kind::kGM, false, [](ExampleSystem* body, double value) { body->mass = value; }},
    {"mass", Kind::kMass, false, [](ExampleSystem* body, double value) { body->mass = value; }},
    {"radius", Kind::kLength, false,
     [](ExampleSystem* body, double value) { body->radius = value; }},
    {"x", Kind::kLength, true, SetPlace<&ThreeVector::x>},
    {"y", Kind::kLength, true, SetPlace<&ThreeVector::y>},
    {"z", Kind::kLength, true, SetPlace<&ThreeVector::z>},
    {"vx", Kind::kSpeed, true, SetSpeed<&ThreeVector::x>},
    {"vy", Kind::kSpeed, true, SetSpeed<&ThreeVector::y>},
    {"vz", Kind::kSpeed, true, SetSpeed<&ThreeVector::z>},
};

std::optional<ImportFault> CsvBodies::Read(std::string_view text, ReadBodies* result) {
    columns_.clear();
    firstTime_.reset();
    ExampleUnits units;
    std::vector<ExampleSystem>& bodies = result->text.systems;
    for (TextLines lines(text); lines.Next();) {
        if (lines.Line().empty() || lines.Line()[0] == '#') continue;
        Wrong wrong;
        if (columns_.empty()) {
            wrong = ReadHeader(lines.Line(), result);
            for (const Column& column : columns_)
                ShowIn(column, &units);
        } else {
            ExampleSystem body;
            body.line = lines.Number();
            body.shownIn = units;
            bool isFirst = true;
            wrong = ReadRow(lines.Line(), &body, &isFirst);
            if (!wrong && isFirst) bodies.push_back(std::move(body));
            if (bodies.size() > BodyImport::kMaxSystems)
                wrong = Problem(kTextTooManyBodies, std::to_string(BodyImport::kMaxSystems));
        }
        if (wrong) return ImportFault{lines.Number(), *wrong};
    }
    if (!Has("gm") && !Has("mass"))
        for (std::size_t i = 0; i < bodies.size(); i++)
            result->massless.push_back(i);
    return std::nullopt;
}

CsvBodies::Wrong CsvBodies::ReadHeader(std::string_view line, ReadBodies* result) {
    const std::vector<std::string> headings = Split(line);
    for (std::size_t i = 0; i < headings.size(); i++)
        if (Wrong wrong = ReadColumn(TextLines::Trim(headings[i]), result))
            return AtColumn(i, *wrong);
    return FindMissing();
}

// "x [km]".
CsvBodies::Wrong CsvBodies::ReadColumn(std::string_view heading, ReadBodies* result) {
    const std::size_t bracket = heading.find('[');
    const std::string_view name = TextLines::Trim(heading.substr(0, bracket));
    std::string_view unit;
    if (bracket != std::string_view::npos && heading.ends_with(']'))
        unit = TextLines::Trim(heading.substr(bracket + 1, heading.size() - bracket - 2));
    for (const Quantity& quantity : kQuantities) {
        if (quantity.name != name) continue;
        if (Has(name)) return Problem(kTextColumnTwice, name);
        double factor = 1.0;
        if (Wrong wrong = FindUnit(quantity, unit, &factor)) return wrong;
        if (quantity.kind == Kind::kMass && factor <= kKilogram) result->usesKilograms = true;
        columns_.push_back({&quantity, factor});
        return std::nullopt;
    }
    return Problem(kTextColumnUnknown, name);
}

CsvBodies::Wrong CsvBodies::FindUnit(const Quantity& quantity, std::string_view unit,
                                     double* factor) const {
    if (quantity.kind == Kind::kName) return std::nullopt;
    if (unit.empty()) return Problem(kTextUnitMissing);
    const TodaysUnits units(resources_);
    std::optional<double> found;
    switch (quantity.kind) {
        case Kind::kGM:
            found = TodaysUnits::GM(unit);
            break;
        case Kind::kMass:
            found = resources_.MassUnits().FactorOf(unit);
            break;
        case Kind::kSpeed:
            found = units.Speed(unit);
            break;
        case Kind::kTime:
            found = resources_.TimeUnits().FactorOf(unit);
            break;
        default:
            found = units.Length(unit);
    }
    if (!found) return Problem(kTextUnitUnknown, unit);
    *factor = *found;
    return std::nullopt;
}

CsvBodies::Wrong CsvBodies::FindMissing() const {
    for (const Quantity& quantity : kQuantities)
        if (quantity.isNeeded && !Has(quantity.name))
            return Problem(kTextColumnMissing, quantity.name);
    if (Has("gm") && Has("mass")) return Problem(kTextColumnTwice, "mass");
    return std::nullopt;
}

CsvBodies::Wrong CsvBodies::ReadRow(std::string_view line, ExampleSystem* body, bool* isFirst) {
    const std::vector<std::string> values = Split(line);
    if (values.size() != columns_.size())
        return Problem(kTextColumnCount, std::to_string(values.size()),
                       std::to_string(columns_.size()));
    for (std::size_t i = 0; i < values.size(); i++) {
        const Column& column = columns_[i];
        const std::string_view text = TextLines::Trim(values[i]);
        if (column.quantity->kind == Kind::kName) {
            body->name = text;
            if (text.empty()) return AtColumn(i, Problem(kTextValueMissing, "name"));
            continue;
        }
        double value = 0.0;
        if (!ParseNumber(text, &value) || !std::isfinite(value * column.factor))
            return AtColumn(i, Problem(kTextWordNoNumber, text));
        if (column.quantity->kind == Kind::kTime) {
            if (!firstTime_) firstTime_ = value;
            *isFirst = value == *firstTime_;
            continue;
        }
        column.quantity->set(body, value * column.factor);
    }
    if (body->mass < 0.0) return Problem(kTextNegativeMass);
    if (body->radius < 0.0) return Problem(kTextImportOutOfRange);
    return std::nullopt;
}

void CsvBodies::ShowIn(const Column& column, ExampleUnits* units) const {
    const Kind kind = column.quantity->kind;
    if (column.quantity->name == "radius") {
        if (resources_.DistanceUnits().FindExact(column.factor) != nullptr)
            units->radius = column.factor;
    } else if (kind == Kind::kLength && resources_.DistanceUnits().FindExact(column.factor)) {
        units->position = column.factor;
    } else if (kind == Kind::kSpeed && resources_.SpeedUnits().FindExact(column.factor)) {
        units->speed = column.factor;
    } else if (kind == Kind::kMass && resources_.MassUnits().FindExact(column.factor)) {
        units->mass = column.factor;
    }
}

bool CsvBodies::Has(std::string_view name) const {
    for (const Column& column : columns_)
        if (column.quantity->name == name) return true;
    return false;
}

std::string CsvBodies::Problem(int32 text, std::string_view what, std::string_view more) const {
    return FillIn(resources_.InterfaceLabel(text), {what, more});
}

std::string CsvBodies::AtColumn(std::size_t index, const std::string& reason) const {
    return Problem(kTextAtColumn, std::to_string(index + 1), reason);
}
