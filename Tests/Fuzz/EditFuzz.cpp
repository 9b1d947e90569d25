// Edits of the command line, one a line, on a new simulation.
#include <algorithm>

#include "Platform/Application/BMessage.h"
#include "Run/DocumentEdit.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Tests/Fuzz/FuzzKit.h"

namespace {

constexpr std::size_t kMaxEdits =
    64;  // what is refused after more takes time and shows nothing new

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ProgramResources& resources = fuzz::Resources();
    static SimulationDocument document(nullptr);
    RunControlView view;
    RunControl run(document.Portal(), document.GetCalculator(), &view);
    SimulationController controller(&document, &run, &resources);
    fuzz::Check(!document.Load(resources.NewSimulation()).Failed(), "there is a new simulation");

    DocumentEdit edit(&document, &controller, &resources);
    std::vector<std::string_view> lines = fuzz::LinesOf(fuzz::TextOf(data, size));
    lines.resize(std::min(lines.size(), kMaxEdits));
    for (const std::string_view line : lines)
        if (const auto wrong = edit.Apply(line))
            fuzz::Check(!wrong->empty(), "a refusal has words");
    fuzz::CheckCanBeKept(&document);
    return 0;
}
