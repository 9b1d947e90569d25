// The force kernel for every processor of the architecture (on x86-64: SSE2, two lanes).
#include "Calculation/ForceKernel.h"

extern const ForceInstance kBaselineForceInstance;
const ForceInstance kBaselineForceInstance = {FirstPass<2>, SecondPass<2>};
