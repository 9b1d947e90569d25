#include "Displays/TimeLine/MomentPlayer.h"

#include <cmath>

#include "Platform/Application/BMessageRunner.h"
#include "Platform/Kernel/OS.h"
#include "Simulation/History/ShownMoment.h"
#include "Simulation/History/TimeLine.h"

namespace {

constexpr double kMicroseconds = 1e6;
constexpr auto kInterval = static_cast<bigtime_t>(kMicroseconds / MomentPlayer::kRate);

}  // namespace

MomentPlayer::MomentPlayer(BHandler* view, ShownMoment* shown) : view_(view), shown_(shown) {}

MomentPlayer::~MomentPlayer() = default;

double MomentPlayer::StepIn(const TimeLine& line, double pace) {
    const bool isPaced = pace > 0.0 && std::isfinite(pace);
    const double way = line.End() - line.Start();
    return (isPaced ? std::copysign(pace, way) : way / kSeconds) / kRate;
}

void MomentPlayer::Start(int32 direction, const TimeLine& line) {
    Stop();
    if (line.IsEmpty() || line.End() == line.Start()) return;
    const Moment moment = shown_->Get();
    const double from = moment.IsPast() ? moment.epoch->Time() : line.End();
    direction_ = direction;
    time_ = from;
    if (direction > 0 && !line.IsBefore(from, line.End())) time_ = line.Start();
    if (direction < 0 && !line.IsBefore(line.Start(), from)) time_ = line.End();
    lastTick_ = system_time();
    shown_->SeekTo(time_);
    ticks_ = std::make_unique<BMessageRunner>(BMessenger(view_), BMessage(kTick), kInterval);
}

void MomentPlayer::Stop() {
    ticks_.reset();
}

void MomentPlayer::Tick(const TimeLine& line, double pace) {
    if (!IsPlaying()) return;
    const bigtime_t now = system_time();
    const double passed = static_cast<double>(now - lastTick_) / kMicroseconds;
    lastTick_ = now;
    time_ += direction_ * passed * kRate * StepIn(line, pace);
    const TimeLine::Run* const run = line.RunAt(time_);
    if (run != nullptr && !run->isKept) return Stop();
    if (!line.IsBefore(line.Start(), time_) || !line.IsBefore(time_, line.End())) Stop();
    shown_->GoTo(time_);
}
