// The series' kernels for x86-64 processors with AVX2: four lanes.
#include "Calculation/Series/SeriesInstances.h"

#ifdef ORVEK_WIDE_KERNELS
// After the headers of others, so that nothing of theirs is compiled for this instruction set.
#pragma GCC target("avx2")
#include "Calculation/Series/SeriesKernel.h"

extern const SeriesInstance kAvx2SeriesInstance;
constinit const SeriesInstance kAvx2SeriesInstance = MakeSeriesInstance<4>();
#endif
