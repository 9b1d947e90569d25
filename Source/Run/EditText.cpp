#include "Run/EditText.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "Model/Epochs/EpochCursor.h"
#include "Simulation/Document/SimulationDocument.h"

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view TakeUpTo(char separator, std::string_view* text) {
    const std::size_t end = std::min(text->find(separator), text->size());
    const std::string_view piece = Trimmed(text->substr(0, end));
    text->remove_prefix(std::min(end + 1, text->size()));
    return piece;
}

std::optional<double> ParseRealTime(std::string_view text) {
    constexpr std::pair<std::string_view, double> kUnits[] = {
        {"", 1.0}, {"s", 1.0}, {"min", 60.0}, {"h", 3600.0}};
    double time = 0.0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, time);
    if (read.ec != std::errc()) return std::nullopt;
    const std::string_view unit = Trimmed({read.ptr, static_cast<std::size_t>(end - read.ptr)});
    for (const auto& [name, seconds] : kUnits)
        if (unit == name) return time * seconds;
    return std::nullopt;
}

std::optional<int32> ContactFromName(std::string_view name) {
    constexpr std::string_view kNames[] = {"merge", "stop", "pass"};
    const auto* const found = std::find(std::begin(kNames), std::end(kNames), name);
    if (found == std::end(kNames)) return std::nullopt;
    return static_cast<int32>(found - std::begin(kNames));
}

std::optional<int64> FindSystem(SimulationDocument* document, std::string_view name) {
    for (const MassSystem* system : document->Portal()->SystemsInIDOrder())
        if (system->Name() == name) return system->ID();
    return std::nullopt;
}

AbEpoch* FindEpoch(SimulationDocument* document, std::string_view numberOrName) {
    int32 wanted = -1;
    const char* const end = numberOrName.data() + numberOrName.size();
    if (std::from_chars(numberOrName.data(), end, wanted).ptr != end) wanted = -1;
    EpochCursor cursor(document->Root());
    cursor.Increment();
    for (int32 number = 0; AbEpoch* epoch = cursor.GetEpoch(); cursor.Increment(), number++)
        if (number == wanted || epoch->Name() == numberOrName) return epoch;
    return nullptr;
}
