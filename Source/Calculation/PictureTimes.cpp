#include "Calculation/PictureTimes.h"

#include <algorithm>
#include <utility>

#include "Calculation/PaceClock.h"

namespace {

constexpr bigtime_t kSecond = 1'000'000;
constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr bigtime_t kPatience = 100'000;
// Part of the pace; anything less counts as falling behind.
constexpr double kReached = 0.95;

}  // namespace

void PictureTimes::Begin(double time) {
    last_ = measuredFrom_ = time;
    isBehind_ = false;
    if (clock_ == nullptr) return;
    measuredAt_ = clock_->Now();
    due_ = measuredAt_ + interval_;
}

bool PictureTimes::SetPace(double pace, int32 pictures) {
    if (clock_ == nullptr || !(pace > 0.0) || pace == kNever) {
        SetOff();
        return false;
    }
    interval_ = kSecond / std::clamp(pictures, 1, kMaxPictures);
    if (pace != pace_) {
        pace_ = pace;
        measuredFrom_ = last_;
        measuredAt_ = clock_->Now();
        isBehind_ = false;
    }
    span_ = pace * static_cast<double>(interval_) / static_cast<double>(kSecond);
    // Far from zero times lie further apart than that.
    if (last_ + span_ == last_ || last_ - span_ == last_)
        span_ = std::abs(last_) * 2.0 * std::numeric_limits<double>::epsilon();
    return true;
}

void PictureTimes::SetOff() {
    span_ = pace_ = kNever;
    isBehind_ = false;
}

void PictureTimes::Drawn() {
    if (clock_ == nullptr || std::exchange(isDrawn_, true)) return;
    if (clock_->Now() > due_ + interval_) due_ = clock_->Now();
}

bool PictureTimes::IsOverdue() const {
    return clock_ != nullptr && clock_->Now() >= due_ + kPatience;
}

void PictureTimes::Await(const std::atomic<int32>& pauseCount) {
    if (clock_ != nullptr) clock_->WaitUntil(due_, [&] { return pauseCount != 0; });
}

void PictureTimes::Shown(double towards) {
    last_ = Next(towards);
    ShownBetween();
}

void PictureTimes::ShownAt(double time) {
    last_ = time;
    ShownBetween();
}

// What is a whole picture late is not made up for.
void PictureTimes::ShownBetween() {
    if (clock_ == nullptr) return;
    isDrawn_ = false;
    due_ = std::max(due_ + interval_, clock_->Now());
    Measure();
}

void PictureTimes::Measure() {
    const bigtime_t elapsed = clock_->Now() - measuredAt_;
    if (elapsed < kSecond) return;
    const double wanted = pace_ * static_cast<double>(elapsed) / static_cast<double>(kSecond);
    isBehind_ = std::abs(last_ - measuredFrom_) < kReached * wanted;
    measuredFrom_ = last_;
    measuredAt_ += elapsed;
}

void PictureTimes::Wake() {
    if (clock_ != nullptr) clock_->Wake();
}
