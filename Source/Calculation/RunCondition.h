// What a run may be to stop at, beside a time: where two bodies are closest, or one of them goes
// through a plane. It is looked for from report to report, and met at the first one at or past it.
// Calculation thread; a copy may be made anywhere.
#pragma once

#include <vector>

#include "Calculation/BodyArrays.h"
#include "Platform/Support/SupportDefs.h"

class Body;

class RunCondition {
public:
    // Instead of a second body: the origin.
    static constexpr int64 kOrigin = -1;

    // By identifiers.
    [[nodiscard]] static RunCondition ClosestApproach(int64 body, int64 other);
    // The plane goes through the other body, or the origin; `axis` is across it: 0, 1, 2 for x, y,
    // z.
    [[nodiscard]] static RunCondition Crossing(int32 axis, int64 body, int64 other = kOrigin);

    // A run begins or goes on with these bodies, in mass order, under the model lock. False: one
    // that it speaks of is gone.
    [[nodiscard]] bool Begin(const std::vector<Body*>& bodies);
    // The bodies are there at the next report. True, once: it is met.
    [[nodiscard]] bool Reached(const BodyArrays& bodies);

private:
    static constexpr int32 kApproach = -1;

    RunCondition(int32 axis, int64 body, int64 other) : axis_(axis), body_(body), other_(other) {}

    [[nodiscard]] double Difference(const double* const axes[3], int32 axis) const;

    int32 axis_;
    int64 body_;
    int64 other_;
    int32 bodyAt_ = 0;
    int32 otherAt_ = -1;   // negative: the origin
    double former_ = 0.0;  // what changes its sign there
};
