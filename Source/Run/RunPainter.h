// Draws the picture of a run: takes the reports, on the calculation thread, and draws them when the
// run is over. Owned by the runner, whose thread calls all else while the calculator is parked. A
// build without the displays' floor has none.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Calculation/ReportConsumer.h"

class Calculator;
class EpochPortal;
class ProgramResources;
struct Options;

class RunPainter : public ReportConsumer {
public:
    // Whether this build can draw.
    [[nodiscard]] static bool IsPossible();
    // Null if it cannot. Nothing is owned.
    [[nodiscard]] static std::unique_ptr<RunPainter> Make(EpochPortal* portal,
                                                          Calculator* calculator,
                                                          const ProgramResources& resources);

    // The bytes of a PNG file.
    [[nodiscard]] virtual std::vector<std::byte> Draw(const Options& options) const = 0;
};
