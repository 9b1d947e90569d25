// The force kernel for x86-64 processors with AVX2: four lanes.
#include "Calculation/ForceInstances.h"

#ifdef ORVEK_WIDE_KERNELS
// After the headers of others, so that nothing of theirs is compiled for this instruction set.
#pragma GCC target("avx2")
#include "Calculation/ForceKernel.h"

extern const ForceInstance kAvx2ForceInstance;
const ForceInstance kAvx2ForceInstance = {FirstPass<4>, SecondPass<4>};
#endif
