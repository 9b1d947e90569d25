// Learns how the bodies of a run move between two reports, and where they touch. Entered with the
// calculator and called on its thread, with the model's write lock held. Only methods that know the
// motion report it: those of orders from 5.
#pragma once

#include <vector>

#include "Calculation/BodyArrays.h"
#include "Platform/Support/SupportDefs.h"

class Body;
class SeriesStep;

class MotionWatcher {
public:
    // From one report to the next.
    struct Piece {
        const SeriesStep& step;
        double from;  // in the step's scales, as the next one
        double to;
        double fromTime;  // s, as reported; so is the next one
        double toTime;
        [[nodiscard]] bool IsBackwards() const { return toTime < fromTime; }
    };

    virtual ~MotionWatcher() = default;

    // A run begins, or goes on after a halt: with these, in mass order.
    virtual void BodiesAre(double time, const std::vector<Body*>& bodies, int32 massive) = 0;
    virtual void Moved(const Piece& piece) = 0;
    // By index, of the bodies that were given.
    virtual void Touched(double time, const BodyArrays& bodies,
                         const std::vector<CollidingPair>& pairs) = 0;

protected:
    MotionWatcher() = default;
    MotionWatcher(const MotionWatcher&) = default;
    MotionWatcher& operator=(const MotionWatcher&) = default;
};
