// The forces of two bodies alone, of which there are many runs: as a walk over their one pair,
// without the vectors, half of which would stay empty. The same bits as ForceKernel.h has.
#pragma once

#include "Calculation/ForceInstances.h"
#include "Platform/Support/SupportDefs.h"

// Accelerations, with order >= 3 jerks and with order >= 4 whole snaps. False where they touch or
// numbers are not finite: then nothing has been done.
[[nodiscard]] bool EvaluatePair(const ForceArrays& arrays, int32 order, double* rate);
