// Reading command lines of orvek-run, one argument a line.
#include <cmath>

#include "Model/Epochs/EpochLimits.h"
#include "Run/Options.h"
#include "Simulation/Document/ProgramResources.h"
#include "Tests/Fuzz/FuzzKit.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Options options;
    const auto wrong =
        ParseOptions(fuzz::LinesOf(fuzz::TextOf(data, size)), fuzz::Resources(), &options);
    if (wrong) {
        fuzz::Check(!wrong->empty(), "a refusal has words");
        return 0;
    }
    fuzz::Check(options.steps.value_or(0) >= 0 && options.every.value_or(1) >= 1,
                "numbers of steps count");
    const double duration = options.duration.value_or(1.0);
    fuzz::Check(duration != 0.0 && std::isfinite(duration), "a duration can be run");
    fuzz::Check(options.scale >= 0.0 && std::isfinite(options.scale), "a scale can be drawn");
    fuzz::Check(options.axis >= 1 && options.axis <= 3, "there are three axes");
    fuzz::Check(IsOrder(options.order.value_or(kDefaultOrder)), "there is such an order");
    return 0;
}
