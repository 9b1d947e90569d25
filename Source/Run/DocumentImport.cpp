#include "Run/DocumentImport.h"

#include <charconv>
#include <cmath>

#include "Exchange/BodyReader.h"
#include "Exchange/CsvExport.h"
#include "Exchange/TextLines.h"
#include "Exchange/TodaysUnits.h"
#include "Model/Sharing/ModelGuards.h"
#include "Resources/Exchange.h"
#include "Resources/Runner.h"
#include "Run/Options.h"
#include "Run/RunnerOutput.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

bool ReadMissingGM(std::string_view text, const ProgramResources& resources, Options* options) {
    double& mass = options->missingGM;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, mass);
    if (read.ec != std::errc()) return false;
    const std::string_view unit =
        TextLines::Trim({read.ptr, static_cast<std::size_t>(end - read.ptr)});
    // Nothing at all is the same in every unit.
    if (unit.empty()) return mass == 0.0;
    std::optional<double> factor = TodaysUnits::GM(unit);
    if (!factor) factor = resources.MassUnits().FactorOf(unit);
    if (!factor) return false;
    mass *= *factor;
    return mass >= 0.0 && std::isfinite(mass);
}

std::optional<ImportFault> ImportFile(const std::string& path, const Options& options,
                                      bool replaces, BodyImport* import,
                                      const ProgramResources& resources,
                                      const RunnerOutput& output) {
    ReadBodies bodies;
    if (auto fault = BodyReader(resources).ReadFile(path, &bodies)) return fault;
    if (!bodies.massless.empty() && options.missingGM < 0.0) {
        const ExampleSystem& first = bodies.text.systems[bodies.massless.front()];
        return ImportFault{first.line,
                           FillIn(resources.InterfaceLabel(kTextMassesMissing), {first.name})};
    }
    bodies.SetMissingMasses(options.missingGM);
    auto fault = import->Add(bodies.text, kCommandImportBodies, replaces);
    if (!fault && bodies.usesKilograms)
        output.Note(FillIn(resources.InterfaceLabel(kTextFailure),
                           {path, resources.InterfaceLabel(kTextOldKilogram)}));
    return fault;
}

int ImportFiles(const Options& options, SimulationDocument* document, RunControl* run,
                const ProgramResources& resources, const RunnerOutput& output) {
    BodyImport import(document, run, &resources);
    bool replaces = !options.document;
    for (const std::string& path : options.imports) {
        if (const auto fault = ImportFile(path, options, replaces, &import, resources, output))
            return output.Fail(path, fault->Text(resources));
        replaces = false;
    }
    return RunnerOutput::kDone;
}

int ExportBodies(const Options& options, SimulationDocument* document, const RunnerOutput& output) {
    if (!options.exported) return RunnerOutput::kDone;
    std::string text;
    {
        const ReadGuard guard(document->Portal());
        text = BodiesAsCsv(*document->Portal()->FocusEpoch());
    }
    return output.PrintText(*options.exported, text);
}
