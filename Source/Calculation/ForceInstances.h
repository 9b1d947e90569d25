// The compiled instances of the force kernel, one for each instruction set, and the arrays they
// work on. Plain data and functions without state; any thread. The evaluator chooses an instance at
// run time through this table and not through the loader, whose resolvers run too early for the
// sanitizers and would hide all instances but one from the tests.
#pragma once

#include "Platform/Support/SupportDefs.h"

// Whether there are kernels for wider vectors. The pragma that chooses their instruction set is the
// GNU compiler's own; another one would compile the narrow kernel three times.
#if defined(__x86_64__) && !defined(__clang__)
#define ORVEK_WIDE_KERNELS
#endif

enum class InstructionSet { kBaseline, kAvx2, kAvx512 };

// The widest vector of any instance, in doubles. Kernels read and write whole vectors, hence every
// array has room for that many elements less one behind its last body.
inline constexpr int32 kMaxLanes = 8;

// N bodies in mass order, the first M of them massive, as structure of arrays; axes 0..2. SI units,
// masses as GM in m3/s2.
struct ForceArrays {
    int32 bodies = 0;
    int32 massive = 0;
    const double* position[3] = {};
    const double* velocity[3] = {};
    const double* gm = nullptr;
    const double* radius = nullptr;
    double* acceleration[3] = {};
    double* jerk[3] = {};
    double* snap[3] = {};
    // Where the first pass leaves what the second would have to find again, two numbers for each
    // source and target, the latter rounded up to whole vectors and counted from `keptFrom`. Null:
    // nowhere.
    double* kept = nullptr;
    int32 keptFrom = 0;
};

// What a range of targets saw: the fastest pair's rate in 1/s2 (0 when there is no pair), and
// whether any pair touches. A pair that touches makes the rate and the sums worthless.
struct FirstPassResult {
    double rate = 0;
    bool touching = false;
};

struct ForceInstance {
    // Acceleration, jerk (order >= 3) and the velocity part of the snap (order >= 4) of the targets
    // begin <= k < end.
    FirstPassResult (*firstPass)(const ForceArrays& arrays, int32 order, int32 begin, int32 end);
    // Adds the part of the snap that comes from the accelerations, which must be complete.
    void (*secondPass)(const ForceArrays& arrays, int32 begin, int32 end);
};

// Null when this build or this processor has no such instance; the baseline always exists.
const ForceInstance* FindForceInstance(InstructionSet set);
InstructionSet BestInstructionSet();
