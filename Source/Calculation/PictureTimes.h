// When pictures of a run are due, and the time of the simulation that each of them shows, so that
// motion is even: from one picture to the next always the same time passes. A machine that cannot
// follow makes them later, and never several at once. Used by the calculation thread; what is told
// of the pace: any thread.
#pragma once

#include <atomic>
#include <cmath>
#include <limits>

#include "Platform/Support/SupportDefs.h"

class PaceClock;

class PictureTimes {
public:
    // More pictures a second no screen needs.
    static constexpr int32 kMaxPictures = 60;

    // Not owned; null: there is no pace. While nothing runs.
    void SetClock(PaceClock* clock) { clock_ = clock; }

    // The times of pictures count from here on, s; the first one is due when it is to be.
    void Begin(double time);
    // Of the next pictures: seconds of the simulation per second (infinity: no pace), and pictures
    // per second. False: there is no pace.
    bool SetPace(double pace, int32 pictures);
    void SetOff();
    [[nodiscard]] bool IsOn() const { return span_ < std::numeric_limits<double>::infinity(); }
    [[nodiscard]] bool HasClock() const { return clock_ != nullptr; }

    // A report of that time is at or past the next picture's time, which way ever time goes.
    [[nodiscard]] bool IsReached(double time) const { return std::abs(time - last_) >= span_; }
    // So is it at or past the one after that.
    [[nodiscard]] bool IsReachedTwice(double time) const {
        return std::abs(time - last_) >= 2.0 * span_;
    }
    // Of the next picture, which lies on the way to this time.
    [[nodiscard]] double Next(double towards) const {
        return towards < last_ ? last_ - span_ : last_ + span_;
    }
    // The last picture is drawn: the time that this took counts for none of the batches to come.
    void Drawn();
    // It is long past the time at which the next picture was due, so that what there is of it is
    // to be shown.
    [[nodiscard]] bool IsOverdue() const;
    // Returns when the next picture is due, or when somebody pauses.
    void Await(const std::atomic<int32>& pauseCount);
    // The next picture is shown, on the way to this time.
    void Shown(double towards);
    // The same, but it shows that very time, from which the next ones count.
    void ShownAt(double time);
    // One out of the row was shown, because it was time for one.
    void ShownBetween();

    // The pace was not reached during the last second or so.
    [[nodiscard]] bool IsBehind() const { return isBehind_; }
    // Wakes the thread that awaits a picture. Any thread.
    void Wake();

private:
    void Measure();

    PaceClock* clock_ = nullptr;
    double last_ = 0.0;                                      // the last picture's time, s
    double span_ = std::numeric_limits<double>::infinity();  // s of the simulation
    double pace_ = std::numeric_limits<double>::infinity();
    bigtime_t interval_ = 0;
    bigtime_t due_ = 0;
    bool isDrawn_ = true;
    double measuredFrom_ = 0.0;
    bigtime_t measuredAt_ = 0;
    std::atomic<bool> isBehind_{false};
};
