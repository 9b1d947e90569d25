#include "Run/EpochListing.h"

#include <algorithm>
#include <vector>

#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/MassSystem.h"
#include "Platform/Support/PrintableText.h"
#include "Resources/Runner.h"
#include "Run/NumberText.h"
#include "Run/TextColumns.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kTimeDigits = 10;
constexpr std::size_t kIndent = 2;
// Every run is a level of its own: long histories go straight down from here.
constexpr std::size_t kDeepestIndent = 20;

std::size_t Indent(const AbEpoch* epoch, const AbEpoch* root) {
    std::size_t indent = 0;
    for (const AbEpoch* above = epoch->Parent(); above && above != root && indent < kDeepestIndent;
         above = above->Parent())
        indent += kIndent;
    return indent;
}

}  // namespace

std::string ListEpochs(SimulationDocument* document, const ProgramResources& resources) {
    struct Line {
        std::string name, time, state, bodies, mark;
    };
    const auto label = [&resources](RunnerText text) { return resources.InterfaceLabel(text); };
    const AbEpoch* const root = document->Root();
    const std::string mark = label(kTextEpochFocus);
    std::vector<Line> lines;
    std::size_t nameWidth = 0;
    std::size_t timeWidth = 0;

    {
        const ReadGuard guard(document->Portal());
        const AbEpoch* const focus = document->Portal()->FocusEpoch();
        EpochCursor cursor(document->Root());
        cursor.Increment();
        for (; AbEpoch* epoch = cursor.GetEpoch(); cursor.Increment()) {
            Line line;
            line.name = std::string(Indent(epoch, root), ' ') + Printable(epoch->Name());
            line.time = RoundedText(epoch->Time() / epoch->TimeUval(), kTimeDigits) + ' ' +
                        resources.TimeUnits().Abbreviation(epoch->TimeUval());
            line.state = label(epoch->Writeable() ? kTextEpochWriteable : kTextEpochReadOnly);
            line.bodies = std::to_string(epoch->RootSystem()->CountBodies());
            line.mark = epoch == focus ? mark : std::string(ColumnsOf(mark), ' ');
            nameWidth = std::max(nameWidth, ColumnsOf(line.name));
            timeWidth = std::max(timeWidth, ColumnsOf(line.time));
            lines.push_back(std::move(line));
        }
    }

    std::string text;
    const std::size_t numberWidth = std::to_string(lines.size() - 1).size();
    for (std::size_t i = 0; i < lines.size(); i++) {
        const Line& line = lines[i];
        std::string number = std::to_string(i);
        number.insert(0, numberWidth - number.size(), ' ');
        const std::string name = line.name + std::string(nameWidth - ColumnsOf(line.name), ' ');
        const std::string time = std::string(timeWidth - ColumnsOf(line.time), ' ') + line.time;
        text +=
            FillIn(label(kTextEpochLine), {name, time, line.state, line.bodies, line.mark, number});
    }
    return text;
}
