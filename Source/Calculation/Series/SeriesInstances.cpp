#include "Calculation/Series/SeriesInstances.h"

extern const SeriesInstance kBaselineSeriesInstance;
#ifdef ORVEK_WIDE_KERNELS
extern const SeriesInstance kAvx2SeriesInstance;
extern const SeriesInstance kAvx512SeriesInstance;
#endif

const SeriesInstance* FindSeriesInstance(InstructionSet set) {
    if (FindForceInstance(set) == nullptr) return nullptr;
#ifdef ORVEK_WIDE_KERNELS
    if (set == InstructionSet::kAvx2) return &kAvx2SeriesInstance;
    if (set == InstructionSet::kAvx512) return &kAvx512SeriesInstance;
#endif
    return &kBaselineSeriesInstance;
}
