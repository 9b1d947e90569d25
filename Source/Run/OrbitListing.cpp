#include "Run/OrbitListing.h"

#include <functional>
#include <numbers>
#include <vector>

#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/MassSystem.h"
#include "Model/Systems/SystemOrbits.h"
#include "Platform/Support/PrintableText.h"
#include "Resources/Runner.h"
#include "Run/EditText.h"
#include "Run/JsonObject.h"
#include "Run/NumberText.h"
#include "Run/TextColumns.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kDigits = 10;

using OrbitAction = std::function<void(const MassSystem&, const SystemOrbit&)>;

void ForEachOrbitIn(const MassSystem& group, MassSystem* root, const OrbitAction& action) {
    for (int32 i = 0; i < group.CountChildren(); i++) {
        const MassSystem& system = *group.ChildAt(i);
        if (const auto orbit = OrbitOf(system, root)) action(system, *orbit);
        ForEachOrbitIn(system, root, action);
    }
}

void ForEachOrbit(SimulationDocument* document, const OrbitAction& action) {
    const ReadGuard guard(document->Portal());
    MassSystem* const root = document->Portal()->FocusEpoch()->RootSystem();
    ForEachOrbitIn(*root, root, action);
}

std::string Degrees(double angle) {
    return RoundedText(angle * (180.0 / std::numbers::pi), kDigits);
}

}  // namespace

std::string ListOrbits(SimulationDocument* document, const ProgramResources& resources) {
    using Line = std::vector<std::string>;
    std::vector<Line> lines;
    {
        const std::string& names = resources.InterfaceLabel(kTextOrbitHeads);
        std::string_view heads = names;
        Line line;
        while (!heads.empty())
            line.emplace_back(TakeUpTo('|', &heads));
        lines.push_back(std::move(line));
    }
    double timeUval = 1.0;
    {
        const ReadGuard guard(document->Portal());
        timeUval = document->Portal()->FocusEpoch()->TimeUval();
    }
    ForEachOrbit(document, [&](const MassSystem& system, const SystemOrbit& orbit) {
        const OrbitalElements& e = orbit.elements;
        const double uval = system.PositionUval();
        const auto size = [&](double metres) {
            return RoundedText(metres / uval, kDigits) + ' ' +
                   resources.DistanceUnits().Abbreviation(uval);
        };
        lines.push_back({Printable(system.Name()), Printable(orbit.about->Name()),
                         size(e.SemiMajorAxis()), size(e.periapsisDistance),
                         RoundedText(e.eccentricity, kDigits), Degrees(e.inclination),
                         Degrees(e.node), Degrees(e.argumentOfPeriapsis), Degrees(e.MeanAnomaly()),
                         Degrees(e.TrueAnomaly()),
                         RoundedText(e.Period() / timeUval, kDigits) + ' ' +
                             resources.TimeUnits().Abbreviation(timeUval)});
    });
    return InColumns(lines);
}

std::string OrbitsAsJson(SimulationDocument* document) {
    std::string list;
    ForEachOrbit(document, [&](const MassSystem& system, const SystemOrbit& orbit) {
        const OrbitalElements& e = orbit.elements;
        JsonObject object;
        object.Add("name", system.Name());
        object.Add("id", system.ID());
        object.Add("about", orbit.about->Name());
        object.Add("about_id", orbit.about->ID());
        object.Add("gm", e.gravitationalParameter);
        object.Add("semi_major_axis", e.SemiMajorAxis());
        object.Add("periapsis_distance", e.periapsisDistance);
        object.Add("eccentricity", e.eccentricity);
        object.Add("inclination", e.inclination);
        object.Add("node", e.node);
        object.Add("argument_of_periapsis", e.argumentOfPeriapsis);
        object.Add("mean_anomaly", e.MeanAnomaly());
        object.Add("true_anomaly", e.TrueAnomaly());
        object.Add("time_since_periapsis", e.timeSincePeriapsis);
        object.Add("period", e.Period());
        if (!list.empty()) list += ',';
        list += object.Text();
    });
    return '[' + list + "]\n";
}
