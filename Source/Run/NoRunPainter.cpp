// In the place of RunPainter.cpp where the displays' floor is not built.
#include "Run/RunPainter.h"

bool RunPainter::IsPossible() {
    return false;
}

std::unique_ptr<RunPainter> RunPainter::Make(EpochPortal* /*portal*/, Calculator* /*calculator*/,
                                             const ProgramResources& /*resources*/) {
    return nullptr;
}
