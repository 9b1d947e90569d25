// Plays what is kept of the runs, forwards or backwards, by moving the moment shown at a steady
// rate. Owned by a view of a window, which passes it the ticks; used with that window's lock.
#pragma once

#include <memory>

#include "Platform/Support/SupportDefs.h"

class BHandler;
class BMessageRunner;
class ShownMoment;
struct TimeLine;

class MomentPlayer {
public:
    static constexpr uint32 kTick = FourCC("tltk");

    // Pictures a second, and how long a whole line takes where there is no pace.
    static constexpr double kRate = 30.0;
    static constexpr double kSeconds = 10.0;

    // Neither is owned. The view gets the ticks.
    MomentPlayer(BHandler* view, ShownMoment* shown);
    ~MomentPlayer();
    MomentPlayer(const MomentPlayer&) = delete;
    MomentPlayer& operator=(const MomentPlayer&) = delete;

    // 1: forwards, -1: backwards; from the moment shown, or from the end of the line where there is
    // nothing left in that direction.
    void Start(int32 direction, const TimeLine& line);
    void Stop();
    [[nodiscard]] bool IsPlaying() const { return ticks_ != nullptr; }
    // `pace`: seconds of the simulation per second; 0 or infinite: there is none.
    void Tick(const TimeLine& line, double pace);
    // From one picture to the next, s of the simulation; negative where time falls.
    [[nodiscard]] static double StepIn(const TimeLine& line, double pace);

private:
    BHandler* const view_;
    ShownMoment* const shown_;
    std::unique_ptr<BMessageRunner> ticks_;
    int32 direction_ = 1;
    double time_ = 0.0;       // s, of the simulation
    bigtime_t lastTick_ = 0;  // us
};
