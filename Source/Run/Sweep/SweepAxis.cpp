#include "Run/Sweep/SweepAxis.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>

#include "Resources/Sweep.h"
#include "Run/EditText.h"
#include "Run/NumberText.h"
#include "Run/Sweep/SweepPlan.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr std::string_view kTo = "..";
constexpr std::string_view kTimes = " x ";
constexpr std::string_view kLog = " log";

struct Range {
    double from = 0.0;
    double to = 0.0;
    std::string_view unit;
    int64 count = 0;
    bool isLog = false;

    // At its ends it is what was written.
    [[nodiscard]] double At(int64 i) const {
        const auto after = static_cast<double>(i);
        const auto before = static_cast<double>(count - 1 - i);
        if (i == 0) return from;
        if (i == count - 1) return to;
        if (isLog) return from * std::pow(to / from, after / (before + after));
        return (from * before + to * after) / (before + after);
    }
};

// What follows the number stays.
template <typename Number>
bool TakeNumber(std::string_view* text, Number* number) {
    const auto read = std::from_chars(text->data(), text->data() + text->size(), *number);
    if (read.ec != std::errc()) return false;
    text->remove_prefix(static_cast<std::size_t>(read.ptr - text->data()));
    return true;
}

bool ReadRange(std::string_view text, Range* range) {
    range->isLog = text.ends_with(kLog);
    if (range->isLog) text.remove_suffix(kLog.size());
    const std::size_t times = text.rfind(kTimes);
    const std::size_t to = text.find(kTo);
    if (to == std::string_view::npos || times == std::string_view::npos || times < to) return false;
    std::string_view first = Trimmed(text.substr(0, to));
    std::string_view last = Trimmed(text.substr(to + kTo.size(), times - to - kTo.size()));
    std::string_view count = Trimmed(text.substr(times + kTimes.size()));
    if (!TakeNumber(&first, &range->from) || !first.empty()) return false;
    if (!TakeNumber(&last, &range->to)) return false;
    if (!TakeNumber(&count, &range->count) || !count.empty()) return false;
    range->unit = Trimmed(last);
    if (range->count < 2 || range->count > SweepPlan::kMaxRuns) return false;
    if (!std::isfinite(range->from) || !std::isfinite(range->to)) return false;
    return !range->isLog || range->from * range->to > 0.0;
}

// The cells of one line; those with commas or quotation marks are in quotes.
SweepAxis::Values SplitLine(std::string_view line) {
    SweepAxis::Values cells(1);
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); i++) {
        const bool isDoubled = isQuoted && line.substr(i, 2) == "\"\"";
        if (line[i] == '"' && !isDoubled) {
            isQuoted = !isQuoted;
        } else if (line[i] == ',' && !isQuoted) {
            cells.emplace_back();
        } else {
            cells.back() += line[i];
            if (isDoubled) i++;
        }
    }
    for (std::string& cell : cells)
        cell = std::string(Trimmed(cell));
    return cells;
}

}  // namespace

std::optional<std::string> SweepAxis::FromRange(std::string_view text,
                                                const ProgramResources& resources,
                                                SweepAxis* axis) {
    const std::size_t equals = text.find('=');
    Range range;
    if (equals == std::string_view::npos || !ReadRange(text.substr(equals + 1), &range))
        return FillIn(resources.InterfaceLabel(kTextSweepNoRange), {text});
    axis->fields.assign(1, std::string(Trimmed(text.substr(0, equals))));
    for (int64 i = 0; i < range.count; i++) {
        std::string value = ExactText(range.At(i));
        if (!range.unit.empty()) (value += ' ') += range.unit;
        axis->rows.push_back({std::move(value)});
    }
    return std::nullopt;
}

std::optional<std::string> SweepAxis::FromFile(const std::string& path,
                                               const ProgramResources& resources, SweepAxis* axis) {
    std::ifstream file(path);
    if (!file)
        return FillIn(resources.InterfaceLabel(kTextSweepFile), {path, std::strerror(errno)});
    int64 number = 0;
    for (std::string line; std::getline(file, line);) {
        number++;
        if (line.ends_with('\r')) line.pop_back();
        if (Trimmed(line).empty()) continue;
        Values cells = SplitLine(line);
        if (axis->fields.empty()) {
            axis->fields = std::move(cells);
            continue;
        }
        if (cells.size() != axis->fields.size())
            return FillIn(resources.InterfaceLabel(kTextSweepFileLine),
                          {path, std::to_string(number)});
        axis->rows.push_back(std::move(cells));
    }
    if (!axis->rows.empty()) return std::nullopt;
    return FillIn(resources.InterfaceLabel(kTextSweepFileEmpty), {path});
}
