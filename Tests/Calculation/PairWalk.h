// The forces as a plain walk over the pairs, in plain scalar code: what ForceEvaluator must give
// bit for bit, and what the benchmarks compare it with.
#pragma once

#include <vector>

#include "Calculation/ForceEvaluator.h"
#include "Platform/Support/SupportDefs.h"

class PairWalk {
public:
    struct Body {
        double position[3];
        double velocity[3];
        double gm;
        double radius;
        double acceleration[3];
        double jerk[3];
        double snap[3];
    };

    // In mass order, the first `massive` of them massive; the caller fills the first four fields.
    std::vector<Body> bodies;
    int32 massive = 0;

    double rate = 0;
    std::vector<CollidingPair> collisions;

    void Evaluate(int32 order);
    // Gives the evaluator the same bodies.
    void CopyTo(ForceEvaluator* evaluator) const;

private:
    void FirstPass(int32 order);
    void SecondPass();
};
