// The series' kernels for x86-64 processors with AVX-512: eight lanes, and twice the registers.
#include "Calculation/Series/SeriesInstances.h"

#ifdef ORVEK_WIDE_KERNELS
// After the headers of others, so that nothing of theirs is compiled for this instruction set.
#pragma GCC target("avx512f,avx512dq,avx512vl,prefer-vector-width=512")
#include "Calculation/Series/SeriesKernel.h"

extern const SeriesInstance kAvx512SeriesInstance;
constinit const SeriesInstance kAvx512SeriesInstance = MakeSeriesInstance<8>();
#endif
