// The series' kernels for every processor of the architecture (on x86-64: SSE2, two lanes).
#include "Calculation/Series/SeriesKernel.h"

extern const SeriesInstance kBaselineSeriesInstance;
constinit const SeriesInstance kBaselineSeriesInstance = MakeSeriesInstance<2>();
