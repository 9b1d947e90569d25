#include "Run/RunProgram.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "Calculation/RankHelper.h"
#include "Calculation/Ranks.h"
#include "Resources/CommonTexts.h"
#include "Resources/Runner.h"
#include "Run/Dialogue/Dialogue.h"
#include "Run/Options.h"
#include "Run/RunPainter.h"
#include "Run/Runner.h"
#include "Run/Sweep/Sweep.h"
#include "Run/Sweep/SweepJob.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// What is not number 0 says nothing and reads nothing.
int HelpWith(const Options& options, const ProgramResources& resources, Ranks* ranks) {
    if (options.IsSweep()) return SweepJob::Do(ranks, options, resources);
    RankHelper(ranks, *options.threads).Help();
    return Runner::kDone;
}

int RunAsFirst(const Options& options, const ProgramResources& resources, Ranks* ranks) {
    if (options.IsSweep()) return Sweep(options, resources, ranks).Run();
    if (options.jsonLines) return Dialogue(options, resources).Run();
    const int status = Runner(options, resources, ranks).Run();
    if (ranks != nullptr) RankHelper::End(ranks);
    return status;
}

}  // namespace

int RunProgram(const std::vector<std::string_view>& arguments, const ProgramResources& resources,
               std::string_view version, Ranks* ranks) {
    const bool isFirst = ranks == nullptr || ranks->IsFirst();
    const auto print = [&](FILE* to, RunnerText text, std::string_view value,
                           std::string_view more = {}) {
        if (!isFirst) return Runner::kDone;
        const std::string filled = FillIn(resources.InterfaceLabel(text), {value, more});
        std::fwrite(filled.data(), 1, filled.size(), to);
        return std::fflush(to) == 0 ? Runner::kDone : Runner::kCouldNot;
    };
    Options options;
    if (const auto wrong = ParseOptions(arguments, resources, &options)) {
        print(stderr, kTextUsage, *wrong);
        return isFirst ? Runner::kUsage : Runner::kDone;
    }
    if (options.help)
        return print(stdout, kTextRunnerHelp, std::to_string(Options::kDefaultSteps),
                     RunPainter::IsPossible() ? std::string()
                                              : resources.InterfaceLabel(kTextNotInThisBuild));
    if (options.version) return print(stdout, kTextVersion, version);
    if (ranks != nullptr && !options.threads) options.threads = ranks->Threads();
    try {
        return isFirst ? RunAsFirst(options, resources, ranks)
                       : HelpWith(options, resources, ranks);
    } catch (const std::bad_alloc&) {
        const std::string name =
            options.document.value_or(resources.InterfaceLabel(kLabelUntitled));
        print(stderr, kTextFailure, name, std::strerror(ENOMEM));
        if (ranks != nullptr) ranks->Abort(Runner::kCouldNot);
        return Runner::kCouldNot;
    }
}
