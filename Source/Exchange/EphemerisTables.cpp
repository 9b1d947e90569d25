#include "Exchange/EphemerisTables.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

#include "Exchange/TextLines.h"
#include "Exchange/TodaysUnits.h"
#include "Model/Systems/OrbitalElements.h"
#include "Resources/Exchange.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr std::string_view kBegin = "$$SOE";
constexpr std::string_view kEnd = "$$EOE";
constexpr std::string_view kTargetLabel = "Target body name";
constexpr std::string_view kCentreLabel = "Center body name";
constexpr std::string_view kFrameLabel = "Reference frame";
constexpr std::string_view kUnitsLabel = "Output units";
constexpr std::string_view kOrbitalGMLabel = "Keplerian GM";
constexpr std::string_view kMomentLabel = "JDTDB";

constexpr double kKilometre = 1000.0;
constexpr double kCubicKilometre = 1e9;

// The number that the text begins with, behind which it goes on.
bool TakeNumber(std::string_view* text, double* number) {
    *text = TextLines::Trim(*text);
    if (text->starts_with('+')) text->remove_prefix(1);
    const auto read = std::from_chars(text->data(), text->data() + text->size(), *number);
    if (read.ec != std::errc() || !std::isfinite(*number)) return false;
    text->remove_prefix(static_cast<std::size_t>(read.ptr - text->data()));
    return true;
}

// "LABEL : VALUE".
std::optional<std::string_view> ValueOf(std::string_view label, std::string_view line) {
    if (!line.starts_with(label)) return std::nullopt;
    line = TextLines::Trim(line.substr(label.size()));
    if (!line.starts_with(':')) return std::nullopt;
    return TextLines::Trim(line.substr(1));
}

// Without where it is from, "{source: ...}".
std::string_view WithoutSource(std::string_view name) {
    return TextLines::Trim(name.substr(0, name.find('{')));
}

// Without its number, "Earth (399)".
std::string_view PlainName(std::string_view name) {
    name = WithoutSource(name);
    if (!name.ends_with(')')) return name;
    const std::string_view plain = TextLines::Trim(name.substr(0, name.rfind('(')));
    return plain.empty() ? name : plain;
}

// "GM, km^3/s^2 = 398600.435", "GM (planet) km^3/s^2 = ...", "GM= 62.6": not its uncertainty.
std::optional<double> FindGM(std::string_view line) {
    const std::size_t gm = line.find("GM");
    if (gm == std::string_view::npos) return std::nullopt;
    if (gm > 0 && line[gm - 1] != ' ' && line[gm - 1] != ',') return std::nullopt;
    const std::string_view rest = line.substr(gm + 2);
    const std::size_t equals = rest.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    const std::string_view unit = rest.substr(0, equals);
    if (unit.find("sigma") != std::string_view::npos) return std::nullopt;
    const bool isPlain = TextLines::Trim(unit).empty();
    if (!isPlain && unit.find("km^3/s^2") == std::string_view::npos) return std::nullopt;
    std::string_view value = rest.substr(equals + 1);
    double number = 0.0;
    if (!TakeNumber(&value, &number) || number < 0.0) return std::nullopt;
    return number * kCubicKilometre;
}

std::vector<std::string> SplitAtCommas(std::string_view line) {
    std::vector<std::string> values;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(','), line.size());
        values.emplace_back(TextLines::Trim(line.substr(0, end)));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return values;
}

}  // namespace

bool EphemerisTables::Are(std::string_view text) {
    return text.find(kBegin) != std::string_view::npos;
}

std::optional<ImportFault> EphemerisTables::Read(std::string_view text, ReadBodies* result) {
    first_.reset();
    head_ = {};
    for (TextLines lines(text); lines.Next();) {
        Wrong wrong;
        if (lines.Line() == kBegin) {
            const int begin = lines.Number();
            wrong = CheckHead();
            if (!wrong) wrong = ReadBlock(&lines);
            if (!wrong) wrong = AddBody(result, begin);
            first_ = std::move(head_);
            head_ = {};
        } else {
            wrong = ReadHeadLine(lines.Line());
        }
        if (wrong) return ImportFault{lines.Number(), *wrong};
    }
    return std::nullopt;
}

EphemerisTables::Wrong EphemerisTables::ReadHeadLine(std::string_view line) {
    if (const auto name = ValueOf(kTargetLabel, line)) {
        head_.body = PlainName(*name);
    } else if (const auto centre = ValueOf(kCentreLabel, line)) {
        head_.centre = WithoutSource(*centre);
    } else if (const auto frame = ValueOf(kFrameLabel, line)) {
        head_.frame = *frame;
    } else if (const auto units = ValueOf(kUnitsLabel, line)) {
        return ReadUnits(*units);
    } else if (auto gm = ValueOf(kOrbitalGMLabel, line)) {
        double number = 0.0;
        if (!TakeNumber(&*gm, &number)) return Problem(kTextHeadUnknown, line);
        const std::optional<double> unit = TodaysUnits::GM(TextLines::Trim(*gm));
        if (!unit || !(number * *unit > 0.0)) return Problem(kTextHeadUnknown, line);
        head_.orbitalGM = number * *unit;
    } else if (line.starts_with("JD")) {
        head_.timeScale = line.substr(0, line.find_first_of(", "));
        head_.columns.clear();  // what the foot of the table before says of them
        if (line.find(',') != std::string_view::npos) head_.columns = SplitAtCommas(line);
    } else if (const auto own = FindGM(line); own && !head_.gm) {
        head_.gm = own;
    }
    return std::nullopt;
}

// "KM-S", "AU-D", "KM-S, deg, Julian Day Number (Tp)".
EphemerisTables::Wrong EphemerisTables::ReadUnits(std::string_view value) {
    const std::string_view units = TextLines::Trim(value.substr(0, value.find(',')));
    const std::size_t dash = units.find('-');
    const std::string_view length = units.substr(0, dash);
    const std::string_view time = units.substr(std::min(dash, units.size()));
    head_.length = length == "KM"   ? kKilometre
                   : length == "AU" ? TodaysUnits::kAstronomicalUnit
                                    : 0.0;
    head_.time = time == "-S" ? 1.0 : time == "-D" ? TodaysUnits::kDay : 0.0;
    if (head_.length > 0.0 && head_.time > 0.0) return std::nullopt;
    return Problem(kTextUnitUnknown, units);
}

EphemerisTables::Wrong EphemerisTables::CheckHead() const {
    const std::pair<bool, std::string_view> needed[] = {
        {!head_.body.empty(), kTargetLabel},
        {!head_.centre.empty(), kCentreLabel},
        {!head_.frame.empty(), kFrameLabel},
        {head_.length > 0.0, kUnitsLabel},
        {head_.timeScale == kMomentLabel, kMomentLabel}};
    for (const auto& [isThere, label] : needed)
        if (!isThere) return Problem(kTextHeadMissing, label);
    if (!first_) return std::nullopt;
    if (head_.centre != first_->centre) return Problem(kTextHeadDiffers, kCentreLabel);
    if (head_.frame != first_->frame) return Problem(kTextHeadDiffers, kFrameLabel);
    return std::nullopt;
}

EphemerisTables::Wrong EphemerisTables::ReadBlock(TextLines* lines) {
    values_.clear();
    int moments = 0;
    while (lines->Next()) {
        const std::string_view line = lines->Line();
        if (line == kEnd)
            return moments > 0 ? std::nullopt : Wrong(Problem(kTextValueMissing, kMomentLabel));
        std::string_view rest = line;
        double moment = 0.0;
        const bool isNew = (line.find(" = ") != std::string_view::npos || !head_.columns.empty()) &&
                           TakeNumber(&rest, &moment);
        if (isNew && moments++ == 0) moment_ = moment;
        if (moments == 0) return Problem(kTextValueMissing, kMomentLabel);
        if (moments > 1 || (isNew && head_.columns.empty())) continue;
        if (Wrong wrong = head_.columns.empty() ? ReadLabelled(line) : ReadSeparated(line))
            return wrong;
    }
    return Problem(kTextTableOpen);
}

// "X =-2.6E+07 Y = 1.4E+08": numbers may touch the sign before them.
EphemerisTables::Wrong EphemerisTables::ReadLabelled(std::string_view line) {
    while (!(line = TextLines::Trim(line)).empty()) {
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) return Problem(kTextWordNoNumber, line);
        const std::string label(TextLines::Trim(line.substr(0, equals)));
        line.remove_prefix(equals + 1);
        const std::string_view shown = TextLines::Trim(line);
        double number = 0.0;
        if (!TakeNumber(&line, &number)) return Problem(kTextWordNoNumber, shown);
        values_[label] = number;
    }
    return std::nullopt;
}

EphemerisTables::Wrong EphemerisTables::ReadSeparated(std::string_view line) {
    const std::vector<std::string> values = SplitAtCommas(line);
    for (std::size_t i = 0; i < std::min(values.size(), head_.columns.size()); i++) {
        // A date in words.
        if (head_.columns[i].empty() || head_.columns[i].starts_with("Calendar")) continue;
        std::string_view rest = values[i];
        double number = 0.0;
        if (!TakeNumber(&rest, &number) || !rest.empty())
            return Problem(kTextWordNoNumber, values[i]);
        values_[head_.columns[i]] = number;
    }
    return std::nullopt;
}

EphemerisTables::Wrong EphemerisTables::AddBody(ReadBodies* result, int line) {
    if (Wrong wrong = CheckMoment(result)) return wrong;
    std::vector<ExampleSystem>& bodies = result->text.systems;
    ExampleSystem body;
    body.line = line;
    body.name = head_.body;
    body.mass = head_.gm.value_or(0.0);
    body.shownIn.position = kKilometre;
    body.shownIn.speed = kKilometre;
    if (Wrong wrong = values_.contains("EC") ? SetElements(&body) : SetState(&body)) return wrong;
    if (!head_.gm) result->massless.push_back(bodies.size());
    bodies.push_back(std::move(body));
    return std::nullopt;
}

EphemerisTables::Wrong EphemerisTables::CheckMoment(ReadBodies* result) const {
    if (result->date && *result->date != moment_) return Problem(kTextHeadDiffers, kMomentLabel);
    result->date = moment_;
    return std::nullopt;
}

EphemerisTables::Wrong EphemerisTables::SetState(ExampleSystem* body) const {
    double numbers[6] = {};
    constexpr const char* kLabels[] = {"X", "Y", "Z", "VX", "VY", "VZ"};
    for (std::size_t i = 0; i < 6; i++) {
        const auto found = values_.find(kLabels[i]);
        if (found == values_.end()) return Problem(kTextValueMissing, kLabels[i]);
        numbers[i] = found->second * (i < 3 ? head_.length : head_.length / head_.time);
    }
    body->position = {numbers[0], numbers[1], numbers[2]};
    body->velocity = {numbers[3], numbers[4], numbers[5]};
    return std::nullopt;
}

EphemerisTables::Wrong EphemerisTables::SetElements(ExampleSystem* body) const {
    if (!head_.orbitalGM) return Problem(kTextHeadMissing, kOrbitalGMLabel);
    double numbers[6] = {};
    constexpr const char* kLabels[] = {"QR", "EC", "IN", "OM", "W", "Tp"};
    for (std::size_t i = 0; i < 6; i++) {
        const auto found = values_.find(kLabels[i]);
        if (found == values_.end()) return Problem(kTextValueMissing, kLabels[i]);
        numbers[i] = found->second;
    }
    constexpr double kDegree = std::numbers::pi / 180.0;
    OrbitalElements orbit;
    orbit.periapsisDistance = numbers[0] * head_.length;
    orbit.eccentricity = numbers[1];
    orbit.inclination = numbers[2] * kDegree;
    orbit.node = numbers[3] * kDegree;
    orbit.argumentOfPeriapsis = numbers[4] * kDegree;
    orbit.timeSincePeriapsis = (moment_ - numbers[5]) * TodaysUnits::kDay;
    orbit.gravitationalParameter = *head_.orbitalGM;
    if (!(orbit.periapsisDistance > 0.0) || orbit.eccentricity < 0.0)
        return Problem(kTextImportOutOfRange);
    // Closer to the truth than the moment of periapsis, which has few digits.
    const auto anomaly = values_.find("MA");
    if (anomaly != values_.end() && orbit.eccentricity < 1.0)
        orbit.timeSincePeriapsis = anomaly->second * kDegree / orbit.MeanMotion();
    const RelativeState state = StateOf(orbit);
    body->position = state.position;
    body->velocity = state.velocity;
    return std::nullopt;
}

std::string EphemerisTables::Problem(int32 text, std::string_view what) const {
    return FillIn(resources_.InterfaceLabel(text), {what});
}
