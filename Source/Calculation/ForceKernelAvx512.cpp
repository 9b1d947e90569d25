// The force kernel for x86-64 processors with AVX-512: eight lanes, and twice the registers.
#include "Calculation/ForceInstances.h"

#ifdef ORVEK_WIDE_KERNELS
// After the headers of others, so that nothing of theirs is compiled for this instruction set.
#pragma GCC target("avx512f,avx512dq,avx512vl,prefer-vector-width=512")
#include "Calculation/ForceKernel.h"

extern const ForceInstance kAvx512ForceInstance;
const ForceInstance kAvx512ForceInstance = {FirstPass<8>, SecondPass<8>};
#endif
