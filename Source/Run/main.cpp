// orvek-run: the engine on a document, without a window.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "Resources/CommonTexts.h"
#include "Resources/Runner.h"
#include "Run/Options.h"
#include "Run/RunPainter.h"
#include "Run/Runner.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

int RunWith(const ProgramResources& resources, const std::vector<std::string_view>& arguments) {
    const auto print = [&resources](FILE* to, RunnerText text, std::string_view value,
                                    std::string_view more = {}) {
        const std::string filled = FillIn(resources.InterfaceLabel(text), {value, more});
        std::fwrite(filled.data(), 1, filled.size(), to);
        return std::fflush(to) == 0 ? Runner::kDone : Runner::kCouldNot;
    };
    Options options;
    if (const auto wrong = ParseOptions(arguments, resources, &options)) {
        print(stderr, kTextUsage, *wrong);
        return Runner::kUsage;
    }
    if (options.help)
        return print(stdout, kTextRunnerHelp, std::to_string(Options::kDefaultSteps),
                     RunPainter::IsPossible() ? std::string()
                                              : resources.InterfaceLabel(kTextNotInThisBuild));
    if (options.version) return print(stdout, kTextVersion, ORVEK_VERSION);
    try {
        return Runner(options, resources).Run();
    } catch (const std::bad_alloc&) {
        const std::string name =
            options.document.value_or(resources.InterfaceLabel(kLabelUntitled));
        const std::string failure =
            FillIn(resources.InterfaceLabel(kTextFailure), {name, std::strerror(ENOMEM)});
        std::fwrite(failure.data(), 1, failure.size(), stderr);
        return Runner::kCouldNot;
    }
}

}  // namespace

int main(int argc, char** argv) {
    const ProgramResources resources;
    return RunWith(resources, {argv + 1, argv + argc});
}
