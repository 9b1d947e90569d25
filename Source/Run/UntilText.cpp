#include "Run/UntilText.h"

#include <algorithm>
#include <utility>

#include "Resources/Runner.h"
#include "Run/EditText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

using Kind = RunTarget::Kind;

constexpr std::string_view kMerger = "merger";
constexpr std::string_view kEscape = "escape";
constexpr std::pair<std::string_view, Kind> kConditions[] = {
    {"closest", Kind::kClosest}, {kEscape, Kind::kEscape}, {"x", Kind::kPlaneX},
    {"y", Kind::kPlaneY},        {"z", Kind::kPlaneZ},
};
constexpr auto FirstOf = &std::pair<std::string_view, Kind>::first;

std::optional<int64> FindBody(SimulationDocument* document, std::string_view name) {
    for (const Body* const body : document->Portal()->BodiesInMassOrder())
        if (body->Name() == name) return body->ID();
    return std::nullopt;
}

// "BODY, BODY", the second of which may be missing where the origin will do.
std::optional<RunTarget> ReadBodies(Kind kind, std::string_view names,
                                    SimulationDocument* document) {
    RunTarget target;
    target.kind = kind;
    const std::optional<int64> body = FindBody(document, TakeUpTo(',', &names));
    const std::string_view second = Trimmed(names);
    if (!body) return std::nullopt;
    target.body = *body;
    if (second.empty()) return kind == Kind::kClosest ? std::nullopt : std::optional(target);
    const std::optional<int64> other = FindBody(document, second);
    if (!other || other == body) return std::nullopt;
    target.other = *other;
    return target;
}

// "BODY, DISTANCE".
std::optional<RunTarget> ReadEscape(std::string_view text, SimulationDocument* document,
                                    const ProgramResources& resources) {
    const std::optional<int64> body = FindBody(document, TakeUpTo(',', &text));
    const UnitTable::Parsed distance = resources.DistanceUnits().Parse(Trimmed(text));
    if (!body || !distance || !(distance.value > 0.0)) return std::nullopt;
    RunTarget target;
    target.kind = Kind::kEscape;
    target.body = *body;
    target.distance = distance.value;
    return target;
}

}  // namespace

std::optional<RunTarget> ParseUntil(std::string_view text, SimulationDocument* document,
                                    const ProgramResources& resources) {
    RunTarget target;
    if (text == kMerger) {
        target.kind = Kind::kMerger;
        return target;
    }
    if (text.find('=') != std::string_view::npos) {
        const std::string_view name = TakeUpTo('=', &text);
        for (const auto& [condition, kind] : kConditions)
            if (name == condition)
                return kind == Kind::kEscape ? ReadEscape(text, document, resources)
                                             : ReadBodies(kind, text, document);
        return std::nullopt;
    }
    const UnitTable::Parsed time = resources.TimeUnits().Parse(text);
    if (!time) return std::nullopt;
    target.kind = Kind::kUntil;
    target.time = time.value;
    return target;
}

std::string UntilRefusal(std::string_view text, SimulationDocument* document,
                         const ProgramResources& resources) {
    std::string_view names = text;
    const std::string_view condition = TakeUpTo('=', &names);
    const bool isOfBodies = std::ranges::count(kConditions, condition, FirstOf) > 0;
    while (isOfBodies && !names.empty()) {
        const std::string_view name = TakeUpTo(',', &names);
        if (!FindBody(document, name))
            return FillIn(resources.InterfaceLabel(kTextUntilNoBody), {std::string(name)});
        if (condition == kEscape) break;  // behind it stands a distance
    }
    return FillIn(resources.InterfaceLabel(kTextBadValue), {"--until", std::string(text)});
}
