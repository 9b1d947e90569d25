// What a run may be to stop at, beside a time: where two bodies are closest, one of them goes
// through a plane, or one escapes. It is looked for from report to report, and met at the very
// moment where the motion between two reports is known, else at the first report at or past it.
// Calculation thread; a copy may be made anywhere.
#pragma once

#include <optional>
#include <vector>

#include "Calculation/BodyArrays.h"
#include "Calculation/EscapeRule.h"
#include "Platform/Support/SupportDefs.h"

class Body;
class SeriesStep;

class RunCondition {
public:
    // Instead of a second body: the origin.
    static constexpr int64 kOrigin = -1;

    // By identifiers.
    [[nodiscard]] static RunCondition ClosestApproach(int64 body, int64 other);
    // The plane goes through the other body, or the origin; `axis` is across it: 0, 1, 2 for x, y,
    // z.
    [[nodiscard]] static RunCondition Crossing(int32 axis, int64 body, int64 other = kOrigin);
    // Beyond so many metres.
    [[nodiscard]] static RunCondition Escape(int64 body, double distance);

    // A run begins or goes on with these bodies, in mass order, under the model lock. False: one
    // that it speaks of is gone.
    [[nodiscard]] bool Begin(const std::vector<Body*>& bodies, bool isBackwards);
    // The bodies are there at the next report. True, once: it is met.
    [[nodiscard]] bool Reached(const BodyArrays& bodies);
    // They move so from the last report to the next one, in the step's scales: when it is met;
    // none: not between these.
    [[nodiscard]] std::optional<double> MomentIn(const SeriesStep& step, double from,
                                                 double to) const;
    // Nothing pulls the bodies, which are there at the last report: in so many seconds it is met,
    // before that many where time falls; none: never.
    [[nodiscard]] std::optional<double> TimeOnStraightWay(const BodyArrays& bodies) const;

private:
    enum Kind { kPlaneX, kPlaneY, kPlaneZ, kApproach, kEscape };

    RunCondition(Kind kind, int64 body, int64 other) : kind_(kind), body_(body), other_(other) {}

    template <class PointOfBody>
    [[nodiscard]] PathPoint Apart(const PointOfBody& pointOf) const;
    template <class PointOfBody>
    [[nodiscard]] double Value(const PointOfBody& pointOf) const;
    [[nodiscard]] bool IsMet(double value) const;
    [[nodiscard]] double TimeToEscape(const PathPoint& fromOthers) const;
    [[nodiscard]] double Turn(const SeriesStep& step, double from, double to) const;

    Kind kind_;
    int64 body_;
    int64 other_;
    EscapeRule escape_;
    int32 bodyAt_ = 0;
    int32 otherAt_ = -1;   // negative: the origin
    double way_ = 1.0;     // -1: time falls
    double former_ = 0.0;  // what changes its sign there
};
