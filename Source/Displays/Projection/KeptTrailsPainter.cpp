#include "Displays/Projection/KeptTrailsPainter.h"

#include <utility>

#include "Displays/Projection/BodyLabels.h"
#include "Displays/Trajectories/TrailSource.h"
#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"

namespace {

// Nobody waits for longer than this for trails that are painted anew, us.
constexpr bigtime_t kPaintTime = 10'000;
// Around the picture, as trails have it that are painted during a run.
constexpr float kMargin = 512.0f;

}  // namespace

void KeptTrailsPainter::Erase(double now) {
    trails_.Cancel();
    {
        const ReadGuard guard(display_->Epoch());
        erasedIn_ = display_->Epoch()->FocusEpoch();
    }
    erasedUntil_ = now;
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
    trails_.Begin(TakeTrails(now, labels), std::move(frames), display_->Plane());
    Paint();
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

std::vector<KeptTrails::Trail> KeptTrailsPainter::TakeTrails(double now,
                                                             const BodyLabels& labels) const {
    TrailSource source;
    source.history = history_;
    source.now = now;
    source.run = run_;
    source.erasedIn = erasedIn_;
    source.erasedUntil = erasedUntil_;
    for (const TrajectoryCache::Member& member : display_->View()->Cache().Reference())
        if (member.body < static_cast<int32>(labels.bodies.size()))
            source.reference.push_back(
                {labels.bodies[static_cast<std::size_t>(member.body)].id, member.weight});
    return source.Take(display_->Epoch());
}
