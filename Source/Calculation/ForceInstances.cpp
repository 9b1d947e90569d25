#include "Calculation/ForceInstances.h"

#include <initializer_list>

extern const ForceInstance kBaselineForceInstance;
#ifdef ORVEK_WIDE_KERNELS
extern const ForceInstance kAvx2ForceInstance;
extern const ForceInstance kAvx512ForceInstance;
#endif

const ForceInstance* FindForceInstance(InstructionSet set) {
    if (set == InstructionSet::kBaseline) return &kBaselineForceInstance;
#ifdef ORVEK_WIDE_KERNELS
    if (set == InstructionSet::kAvx2 && __builtin_cpu_supports("avx2")) return &kAvx2ForceInstance;
    if (set == InstructionSet::kAvx512 && __builtin_cpu_supports("avx512f") &&
        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl"))
        return &kAvx512ForceInstance;
#endif
    return nullptr;
}

InstructionSet BestInstructionSet() {
    for (InstructionSet set : {InstructionSet::kAvx512, InstructionSet::kAvx2})
        if (FindForceInstance(set)) return set;
    return InstructionSet::kBaseline;
}
