#include "Calculation/PictureBatches.h"

#include <algorithm>
#include <new>

#include "Calculation/ReportBatch.h"
#include "Calculation/StopFlags.h"
#include "Model/Systems/Body.h"

namespace {

// Of so many reports in a picture each is near enough to its end.
constexpr int32 kFineReports = 20;

void Append(const ThreeVector& v, std::vector<double>* to) {
    to->insert(to->end(), {v.x, v.y, v.z});
}

}  // namespace

void PictureBatches::Begin(double time, const std::vector<Body*>& bodies) {
    times_.Begin(time);
    stride_ = 3 * bodies.size();
    inPicture_ = 0;
    isAfterShown_ = true;
    before_ = after_ = {};
    try {
        after_.positions.reserve(stride_);
        after_.velocities.reserve(stride_);
    } catch (const std::bad_alloc&) {
        return;  // the first picture is not quite in time
    }
    for (const Body* const body : bodies) {
        Append(body->Position(), &after_.positions);
        Append(body->Velocity(), &after_.velocities);
    }
    after_.time = time;
    after_.isThere = true;
}

void PictureBatches::Take(ReportBatch* batch, int32 reports) {
    batch_ = batch;
    reports_ = reports;
    next_ = 0;
    hasNext_ = true;
    isCut_ = false;
    if (reports == 0) return;
    inPicture_ += reports;
    std::swap(before_, after_);
    try {
        if (reports > 1) Keep(reports - 2, &before_);
        Keep(reports - 1, &after_);
        isCut_ = IsToBeCut();
    } catch (const std::bad_alloc&) {
        before_ = after_ = {};  // likewise this one
    }
}

void PictureBatches::Keep(int32 report, State* into) const {
    into->isThere = false;
    const std::size_t first = stride_ * static_cast<std::size_t>(report);
    const double* const positions = batch_->Positions() + first;
    const double* const velocities = batch_->Velocities() + first;
    into->positions.assign(positions, positions + stride_);
    into->velocities.assign(velocities, velocities + stride_);
    into->time = batch_->Times()[report];
    into->isThere = true;
}

bool PictureBatches::IsToBeCut() const {
    return before_.isThere && inPicture_ < kFineReports && times_.IsReached(after_.time) &&
           !times_.IsReached(before_.time);
}

void PictureBatches::Await(const StopFlags& stop) {
    const bool isPicture = reports_ > 0 && times_.IsReached(batch_->Times()[reports_ - 1]);
    if (isPicture || isCut_) times_.Await(stop.pauseCount);
}

PictureBatches::Piece PictureBatches::Next(const StopFlags& stop) {
    if (!isCut_) return Whole(stop.ShouldStop());
    if (stop.pauseCount != 0 || !times_.IsReached(after_.time)) return Rest();
    return Cut(stop.internalPause);
}

PictureBatches::Piece PictureBatches::Whole(bool isStopping) {
    hasNext_ = false;
    if (reports_ == 0) {
        // What was calculated beyond the last picture is where the bodies are when the run stops.
        if (!isStopping || isAfterShown_ || !after_.isThere) return From(0, isStopping);
        isAfterShown_ = true;
        return {1, &after_.time, after_.positions.data(), after_.velocities.data(), true};
    }
    isAfterShown_ = true;
    const double last = batch_->Times()[reports_ - 1];
    const bool isPicture = times_.IsReached(last);
    const bool isShown = isPicture || isStopping || times_.IsOverdue();
    if (isPicture) {
        inPicture_ = 0;
        if (times_.IsReachedTwice(last))
            times_.ShownAt(last);
        else
            times_.Shown(last);
    } else if (isShown) {
        times_.ShownBetween();
    }
    return From(0, isShown);
}

PictureBatches::Piece PictureBatches::Cut(bool isEnding) {
    const double time = times_.Next(after_.time);
    Interpolate(time);
    times_.Shown(after_.time);
    inPicture_ = 1;  // the one behind the picture
    isAfterShown_ = time == after_.time;
    hasNext_ = times_.IsReached(after_.time) || (isEnding && !isAfterShown_);
    const Piece piece = From(next_, true);
    next_ = reports_ - 1;
    return piece;
}

PictureBatches::Piece PictureBatches::Rest() {
    hasNext_ = false;
    isAfterShown_ = true;
    const std::size_t last = stride_ * static_cast<std::size_t>(reports_ - 1);
    std::copy(after_.positions.begin(), after_.positions.end(), batch_->Positions() + last);
    std::copy(after_.velocities.begin(), after_.velocities.end(), batch_->Velocities() + last);
    batch_->Times()[reports_ - 1] = after_.time;
    return From(next_, true);
}

PictureBatches::Piece PictureBatches::From(int32 report, bool isShown) const {
    const std::size_t first = stride_ * static_cast<std::size_t>(report);
    return {reports_ - report, batch_->Times() + report, batch_->Positions() + first,
            batch_->Velocities() + first, isShown};
}

// Hermite's cubic between the two reports takes the place of the second.
void PictureBatches::Interpolate(double time) const {
    const double step = after_.time - before_.time;
    const double s = (time - before_.time) / step;
    const double rest = 1.0 - s;
    const std::size_t last = stride_ * static_cast<std::size_t>(reports_ - 1);
    double* const positions = batch_->Positions() + last;
    double* const velocities = batch_->Velocities() + last;
    for (std::size_t i = 0; i < stride_; i++) {
        const double way = after_.positions[i] - before_.positions[i];
        const double v0 = before_.velocities[i];
        const double v1 = after_.velocities[i];
        positions[i] = before_.positions[i] + s * s * (3.0 - 2.0 * s) * way +
                       step * s * rest * (rest * v0 - s * v1);
        velocities[i] =
            6.0 * s * rest * way / step + rest * (rest - 2.0 * s) * v0 + s * (s - 2.0 * rest) * v1;
    }
    batch_->Times()[reports_ - 1] = time;
}
