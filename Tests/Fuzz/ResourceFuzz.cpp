// Reading a resource file, and what the program makes of its resources.
#include "Platform/Storage/BResources.h"
#include "Simulation/Document/ProgramResources.h"
#include "Tests/Fuzz/FuzzKit.h"

namespace {

void ReadEverything(const BResources& resources) {
    type_code type = 0;
    int32 id = 0;
    const char* name = nullptr;
    std::size_t size = 0;
    for (int32 i = 0; resources.GetResourceInfo(i, &type, &id, &name, &size); i++) {
        std::size_t found = 0;
        const auto* const data = static_cast<const char*>(resources.LoadResource(type, id, &found));
        fuzz::Check(data != nullptr, "a resource that is listed can be loaded");
        static_cast<void>(std::string(data, found));
        if (*name != '\0')
            fuzz::Check(resources.LoadResource(type, name, &found) != nullptr,
                        "it can be loaded by its name");
        static_cast<void>(resources.LoadString(id));
    }
}

void CheckUnits(const UnitTable& units) {
    for (const UnitInfo& row : units.Rows()) {
        fuzz::Check(row.factor > 0.0, "a unit has a factor");
        fuzz::Check(units.FindExact(row.factor) != nullptr, "a unit is found by its factor");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Bytes bytes = fuzz::BytesOf(data, size);
    BResources resources;
    if (resources.SetTo({bytes.begin(), bytes.end()}) != B_OK) {
        fuzz::Check(resources.CountResources() == 0, "a file that cannot be read has no resources");
        return 0;
    }
    ReadEverything(resources);
    const ProgramResources program(resources);
    for (const UnitTable* units : {&program.MassUnits(), &program.DistanceUnits(),
                                   &program.SpeedUnits(), &program.TimeUnits()})
        CheckUnits(*units);
    static_cast<void>(program.NewSimulation().ToText());
    return 0;
}
