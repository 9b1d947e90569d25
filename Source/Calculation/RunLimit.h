// Where a run is to stop by itself: after so many reports, or at the first report at or past a
// time. Set by any thread, obeyed by the calculation thread from the start of its next run on;
// pauses and collisions on the way do not restart the count.
#pragma once

#include <limits>
#include <mutex>

#include "Platform/Support/SupportDefs.h"

class RunLimit {
public:
    // 0 reports and a time of +infinity (seconds): no limit.
    void Set(int64 reports, double time) {
        const std::lock_guard lock(mutex_);
        next_ = {reports > 0 ? reports : kNoReports,
                 time < std::numeric_limits<double>::infinity() ? time : kNoTime};
        changed_ = true;
    }

    // A run starts. Calculation thread.
    void Begin() {
        const std::lock_guard lock(mutex_);
        if (changed_) current_ = next_;
        changed_ = false;
    }

    // The time at which the run is to stop, s; NaN if at none. Calculation thread.
    [[nodiscard]] double Time() const { return current_.time; }
    // Reports that are left. Calculation thread, or while it is parked.
    [[nodiscard]] int64 Reports() const { return current_.reports; }

    // Counts one report; true if it is the one to stop at, which also ends the limit.
    bool Reached(double time) {
        if (--current_.reports > 0 && !(time >= current_.time)) return false;
        current_ = Limit{};
        return true;
    }

private:
    static constexpr int64 kNoReports = std::numeric_limits<int64>::max();
    static constexpr double kNoTime =
        std::numeric_limits<double>::quiet_NaN();  // nothing is past it

    struct Limit {
        int64 reports = kNoReports;
        double time = kNoTime;
    };

    std::mutex mutex_;  // guards next_ and changed_
    Limit next_;
    bool changed_ = false;
    Limit current_;  // the calculation thread's own
};
