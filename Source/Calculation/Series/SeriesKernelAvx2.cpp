// The series' kernels for x86-64 processors with AVX2: four lanes.
#if defined(__x86_64__)
#include "Calculation/Series/SeriesInstances.h"
// After the headers of others, so that nothing of theirs is compiled for this instruction set.
#pragma GCC target("avx2")
#include "Calculation/Series/SeriesKernel.h"

extern const SeriesInstance kAvx2SeriesInstance;
constinit const SeriesInstance kAvx2SeriesInstance = MakeSeriesInstance<4>();
#endif
