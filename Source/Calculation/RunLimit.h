// Where a run is to stop by itself: after so many steps, or at a time. An integrator that can end a
// step anywhere stops at that very time, any other at the first report past it; where time falls,
// past it is before it. Set by any thread and obeyed by the calculation thread from the start of
// its next run on; pauses and collisions on the way do not restart the count. A limit that was
// reached holds no more.
#pragma once

#include <limits>
#include <mutex>

#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;

// What is left of a limit.
struct RunLeft {
    int64 steps = 0;                                         // 0: any number
    double until = std::numeric_limits<double>::infinity();  // s; +infinity: for ever
    bool isBackwards = false;                                // time falls

    [[nodiscard]] status_t Archive(BMessage* into) const;
    // B_BAD_DATA: no run has such a limit. Changes nothing unless all is well.
    [[nodiscard]] status_t Regenerate(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);
};

class RunLimit {
public:
    void Set(const RunLeft& limit) {
        const std::lock_guard lock(mutex_);
        next_ = {limit.steps > 0 ? limit.steps : kNoSteps,
                 limit.until < std::numeric_limits<double>::infinity() ? limit.until : kNoTime};
        changed_ = true;
    }

    // A run starts. Calculation thread.
    void Begin(bool isBackwards) {
        const std::lock_guard lock(mutex_);
        if (changed_) current_ = next_;
        changed_ = false;
        isBackwards_ = isBackwards;
    }

    // The time at which the run is to stop, s; NaN if at none. Calculation thread.
    [[nodiscard]] double Time() const { return current_.time; }
    // Calculation thread, or while it is parked.
    [[nodiscard]] RunLeft Left() const {
        RunLeft left{.steps = current_.steps, .isBackwards = isBackwards_};
        if (current_.time == current_.time) left.until = current_.time;
        return left;
    }

    // A report at that time, with so many steps since the one before. True if it is the one to stop
    // at, which also ends the limit.
    bool Reached(int32 steps, double time) {
        current_.steps -= steps;
        const bool isThere = isBackwards_ ? time <= current_.time : time >= current_.time;
        if (current_.steps > 0 && !isThere) return false;
        current_ = Limit{};
        return true;
    }

private:
    static constexpr int64 kNoSteps = std::numeric_limits<int64>::max();
    static constexpr double kNoTime =
        std::numeric_limits<double>::quiet_NaN();  // nothing is past it

    struct Limit {
        int64 steps = kNoSteps;
        double time = kNoTime;
    };

    std::mutex mutex_;  // guards next_ and changed_
    Limit next_;
    bool changed_ = false;
    Limit current_;  // the calculation thread's own, as is the next
    bool isBackwards_ = false;
};
