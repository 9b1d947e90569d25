// In the place of RunPainter.cpp and RunFilm.cpp where the displays' floor is not built.
#include "Displays/Film/FilmFiles.h"
#include "Run/RunFilm.h"
#include "Run/RunPainter.h"
#include "Run/RunnerOutput.h"
#include "Simulation/History/RunHistory.h"

bool RunPainter::IsPossible() {
    return false;
}

std::unique_ptr<RunPainter> RunPainter::Make(EpochPortal* /*portal*/, Calculator* /*calculator*/,
                                             const ProgramResources& /*resources*/) {
    return nullptr;
}

RunFilm::RunFilm(const Options& options, const ProgramResources& resources,
                 const RunnerOutput& output, SimulationDocument* document)
    : options_(options), resources_(resources), output_(output), document_(document) {}

RunFilm::~RunFilm() = default;

void RunFilm::NoteMergers(const MergeResult& /*merged*/) {}

int RunFilm::CheckPlace() {
    return RunnerOutput::kDone;
}

int RunFilm::Write() {
    return RunnerOutput::kDone;
}
