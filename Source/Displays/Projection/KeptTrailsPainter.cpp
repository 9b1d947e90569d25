#include "Displays/Projection/KeptTrailsPainter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Displays/Comparison/RunComparison.h"
#include "Displays/Projection/BodyLabels.h"
#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/OS.h"

namespace {

// Nobody waits for longer than this for trails that are painted anew, us.
constexpr bigtime_t kPaintTime = 10'000;
// Around the picture: half a line's width, and a pixel for the smoothed edge.
constexpr float kMargin = 2.0f;
// Trails that get shorter are painted anew so often, and take so much of the time at the most.
constexpr bigtime_t kAnew = 40'000;
constexpr bigtime_t kShare = 4;
// Of a box around samples, how far from its faces a path may bend beyond it.
constexpr double kBend = 0.02;

// Between two samples near its edge a path may bend beyond them.
Extent ExtentOf(const std::vector<KeptTrails::Trail>& trails) {
    Extent all;
    for (const KeptTrails::Trail& trail : trails)
        for (const Sample& sample : trail.samples)
            all.Add(sample.position);
    const ThreeVector inset = (all.high - all.low) * kBend;
    const ThreeVector low = all.low + inset, high = all.high - inset;
    for (const KeptTrails::Trail& trail : trails)
        for (std::size_t i = 1; i < trail.samples.size(); i++) {
            const Sample& to = trail.samples[i];
            const ThreeVector& p = to.position;
            const bool isInside = p.x >= low.x && p.x <= high.x && p.y >= low.y && p.y <= high.y &&
                                  p.z >= low.z && p.z <= high.z;
            if (isInside || !to.isJoined) continue;
            const Sample& from = trail.samples[i - 1];
            for (const double part : {0.25, 0.5, 0.75})
                all.Add(Between(from, to, from.time + part * (to.time - from.time)).position);
        }
    return all;
}

}  // namespace

void KeptTrailsPainter::Erase(double now) {
    trails_.Cancel();
    {
        const ReadGuard guard(display_->Epoch());
        erasedIn_ = display_->Epoch()->FocusEpoch();
    }
    erasedUntil_ = now;
    extent_ = {};
    ModelChanged();
}

void KeptTrailsPainter::PaintAll(double now, const BodyLabels& labels) {
    const BRect picture = display_->View()->BitmapBounds();
    painted_ = picture;
    PaintWithin({{picture.left - kMargin, picture.top - kMargin, picture.right + kMargin,
                  picture.bottom + kMargin}},
                now, labels);
}

// What was painted beyond the picture's edge is lost, since the picture had no place for it.
void KeptTrailsPainter::PaintUncovered(double now, const BodyLabels& labels) {
    const BRect is = display_->View()->BitmapBounds();
    const BRect was = painted_;
    if (history_ == nullptr || is == was) return;
    ModelChanged();
    if (!trails_.IsDone() || was.left < is.left || was.top < is.top || was.right > is.right ||
        was.bottom > is.bottom)
        return PaintAll(now, labels);
    painted_ = is;
    std::vector<BRect> frames;
    if (is.top < was.top) frames.push_back({is.left, is.top, is.right, was.top});
    if (is.bottom > was.bottom) frames.push_back({is.left, was.bottom, is.right, is.bottom});
    if (is.left < was.left) frames.push_back({is.left, was.top, was.left, was.bottom});
    if (is.right > was.right) frames.push_back({was.right, was.top, is.right, was.bottom});
    PaintWithin(std::move(frames), now, labels);
}

void KeptTrailsPainter::PaintWithin(std::vector<BRect> frames, double now,
                                    const BodyLabels& labels) {
    if (history_ == nullptr) return;
    const bigtime_t start = system_time();
    std::vector<KeptTrails::Trail> trails = Take(now, labels);
    extent_ = ExtentOf(trails);
    trails_.Begin(std::move(trails), std::move(frames), display_->Plane());
    Paint();
    const bigtime_t end = system_time();
    due_ = end + std::max(kAnew, kShare * (end - start));
}

bool KeptTrailsPainter::ChangeAtEnds() const {
    return length_.IsLimited() || (comparison_ != nullptr && comparison_->IsOn());
}

bool KeptTrailsPainter::IsDue() const {
    return history_ != nullptr && ChangeAtEnds() && trails_.IsDone() && system_time() >= due_;
}

void KeptTrailsPainter::GoOn() {
    if (trails_.IsDone()) return;
    Paint();
    display_->DrawDiscs();
}

void KeptTrailsPainter::Paint() {
    trails_.Paint(display_->View(), kPaintTime);
    if (!trails_.IsDone()) WindowServer::Deliver(display_, BMessage(kGoOn));
}

std::vector<KeptTrails::Trail> KeptTrailsPainter::Take(double now, const BodyLabels& labels) {
    if (history_ == nullptr) return {};
    const auto id = [&labels](int32 body) {
        const bool isThere = body >= 0 && body < static_cast<int32>(labels.bodies.size());
        return isThere ? labels.bodies[static_cast<std::size_t>(body)].id : kNoSystemID;
    };
    const TrajectoryCache& cache = display_->View()->Cache();
    TrailSource source;
    source.history = history_;
    source.now = now;
    source.run = run_;
    source.length = length_;
    source.erasedIn = erasedIn_;
    source.erasedUntil = erasedUntil_;
    for (const TrajectoryCache::Member& member : cache.Reference())
        if (const int64 body = id(member.body); body != kNoSystemID)
            source.reference.push_back({body, member.weight});
    if (const auto& turning = cache.GetTurning(); turning)
        source.turning = {id(turning->first), id(turning->second), turning->axis};
    if (!parts_) parts_ = source.FindParts(display_->Epoch());
    std::vector<KeptTrails::Trail> trails = source.Take(*parts_);
    if (comparison_ != nullptr && comparison_->IsOn()) AddFaint(std::move(source), &trails);
    return trails;
}

// Of the other story, from where the two part.
void KeptTrailsPainter::AddFaint(TrailSource source, std::vector<KeptTrails::Trail>* trails) {
    source.run = comparison_->RunAt(source.now);
    if (source.run == nullptr) return;
    source.erasedIn = nullptr;
    if (source.run != faintRun_) {
        faintRun_ = source.run;
        faintParts_ = source.FindParts(display_->Epoch());
        // A branch shares the run that it begins in up to there.
        std::erase_if(faintParts_, [this](TrailSource::Part& part) {
            const auto own = std::ranges::find(*parts_, part.epoch, &TrailSource::Part::epoch);
            if (own == parts_->end()) return false;
            part.from = own->to;
            return std::isinf(own->to) || own->to == part.to;
        });
    }
    for (KeptTrails::Trail& trail : source.Take(faintParts_)) {
        trail.isFaint = true;
        trails->push_back(std::move(trail));
    }
}
