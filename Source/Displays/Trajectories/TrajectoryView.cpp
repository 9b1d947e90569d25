#include "Displays/Trajectories/TrajectoryView.h"

#include <algorithm>
#include <cmath>

#include "Displays/Trajectories/TrajectoryMap.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Platform/Interface/Canvas/LineClip.h"

namespace {

constexpr int32 kLinesPerArray = 128;
// Around the picture; lines beyond it are left alone, and discs that do not reach into it.
constexpr float kClippingMargin = 512.0f;
constexpr float kMaxDiscRadius = 8192.0f;

// What asks for which step of a redisplay.
constexpr int32 kBodiesChanged = kSystemRemoved | kSystemAdded;
constexpr int32 kOptionsChanged =
    kTrailChanged | kDiscChanged | kMassOrRadiusChanged | kBodiesChanged;
constexpr int32 kPlacesChanged = kTrailChanged | kPositionChanged | kBodiesChanged;
constexpr int32 kDiscsChanged =
    kDiscChanged | kPositionChanged | kMassOrRadiusChanged | kBodiesChanged;
static_assert(kBodiesChanged == 0xc00 && kOptionsChanged == 0xc26 && kPlacesChanged == 0xc0a &&
              kDiscsChanged == 0xc2c);

BRect Grown(BRect rect, float by) {
    return {rect.left - by, rect.top - by, rect.right + by, rect.bottom + by};
}

bool IsFinite(BPoint point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
}

rgb_color Brighter(rgb_color color) {
    const auto channel = [](uint8 value) { return static_cast<uint8>(255 - (255 - value) / 2); };
    return {channel(color.red), channel(color.green), channel(color.blue), 255};
}

float DrawnRadius(const TrajectoryCache::Disc& disc) {
    return std::min(disc.radius, kMaxDiscRadius);
}

}  // namespace

TrajectoryView::TrajectoryView(const char* name, TrajectoryMap* map, rgb_color sky)
    : SmartView(name, sky), cache_(map) {}

BRect TrajectoryView::ClippingFrame() const {
    return Grown(BitmapBounds(), kClippingMargin);
}

// --- The model ---

void TrajectoryView::PrepareForGo(int32 reportsPerSegment, const std::vector<Body*>& bodies) {
    const ViewLock lock(this);
    if (!lock) return;
    DrawBatch();
    EraseDiscs(true);
    cache_.ResizeCache(reportsPerSegment, static_cast<int32>(bodies.size()));
    cache_.CacheDrawOptions(bodies);
    cache_.CacheInitialPositions(bodies);
}

void TrajectoryView::Redisplay(int32 changes, const std::vector<Body*>& bodies, bool isRunning) {
    const ViewLock lock(this);
    if (!lock) return;
    // A batch that still waits to be drawn ends where the bodies are seen next.
    if ((changes & kPlacesChanged) != 0) DrawBatch();
    // The model is a batch ahead: a trail that began there would go back first.
    const bool isModelAhead = isRunning && (changes & kBodiesChanged) == 0 &&
                              cache_.CountBodies() == static_cast<int32>(bodies.size());
    if ((changes & kDiscsChanged) != 0) EraseDiscs(true);
    if ((changes & kBodiesChanged) != 0)
        cache_.ResizeCache(cache_.Capacity(), static_cast<int32>(bodies.size()));
    if ((changes & kOptionsChanged) != 0) cache_.CacheDrawOptions(bodies);
    if ((changes & kPlacesChanged) != 0 && !isModelAhead) cache_.CacheInitialPositions(bodies);
    DrawDiscs();
}

void TrajectoryView::ReadPositions(int32 reports, const double* positions) {
    const ViewLock lock(this);
    if (lock) cache_.ReadPositions(reports, positions);
}

// --- Drawing ---

void TrajectoryView::DisplayData(bool isShown) {
    const ViewLock lock(this);
    if (!lock || !cache_.HasBatch()) return;
    DrawBatch();
    PaintDiscs();
    if (isShown) ShowPicture();
}

// All but the discs at their new places.
void TrajectoryView::DrawBatch() {
    if (!cache_.HasBatch()) return;
    cache_.MakeTrails();
    DrawTrails();
    SVSync();
    cache_.SetLastR();
    EraseDiscs(false);
    cache_.SetDrawn();
}

// Lines are cut here, and not when trails are made: a trail that leaves the frame and comes back
// would otherwise take a short cut through it.
void TrajectoryView::DrawTrails() {
    const BRect frame = ClippingFrame();
    int32 lines = 0;
    SVBeginLineArray(kLinesPerArray);
    for (int32 body = 0; body < cache_.CountBodies(); body++) {
        const TrajectoryCache::Trail trail = cache_.TrailAt(body);
        for (int32 i = 1; i < trail.count; i++) {
            BPoint start = trail.points[i - 1];
            BPoint end = trail.points[i];
            if (!FixStartEnd(&start, &end, frame)) continue;
            if (lines == kLinesPerArray) {
                SVEndLineArray();
                SVBeginLineArray(kLinesPerArray);
                lines = 0;
            }
            SVAddLine(start, end, trail.color);
            lines++;
        }
    }
    SVEndLineArray();
}

void TrajectoryView::EraseDiscs(bool all) {
    const BRect frame = ClippingFrame();
    const FrameMoment moment = cache_.LastFrame();
    for (int32 body = 0; body < cache_.CountBodies(); body++) {
        const BPoint from = cache_.DiscAt(body).center;
        const BPoint to = cache_.LastPoint(body, moment);
        cache_.SetDiscCenter(body, to);
        const bool hasMoved = std::abs(round_to_unit(from.x) - round_to_unit(to.x)) >= 1.0f ||
                              std::abs(round_to_unit(from.y) - round_to_unit(to.y)) >= 1.0f;
        const bool isErased =
            all || (hasMoved && IsInside(from, Grown(frame, DrawnRadius(cache_.DiscAt(body))))) ||
            !cache_.DiscAt(body).isOn;
        if (isErased && IsFinite(from)) CopyFromCanvas(cache_.DomainCenteredAt(body, from));
    }
}

void TrajectoryView::DrawDiscs() {
    const ViewLock lock(this);
    if (!lock) return;
    PaintDiscs();
    ShowPicture();
}

void TrajectoryView::PaintDiscs() {
    const BRect bounds = BitmapBounds();
    for (int32 body = 0; body < cache_.CountBodies(); body++) {
        const TrajectoryCache::Disc& disc = cache_.DiscAt(body);
        const float radius = DrawnRadius(disc);
        // A disc reaches into the picture from as far away as it is large.
        if (!disc.isOn || !IsInside(disc.center, Grown(bounds, radius))) continue;
        SetHighColor(disc.color);
        if (cache_.IsMarked(disc))
            PaintMark(disc);
        else
            DrawDisc(disc.center, radius, HighColor());
    }
}

void TrajectoryView::PaintMark(const TrajectoryCache::Disc& disc) {
    DrawDisc(disc.center, TrajectoryCache::kMarkReach, LowColor());
    DrawDisc(disc.center, TrajectoryCache::kMarkRadius, Brighter(HighColor()));
}

void TrajectoryView::ClearLow() {
    const ViewLock lock(this);
    if (!lock) return;
    SVFillRect(BitmapBounds(), B_SOLID_LOW);
    SVSync();
    cache_.ForgetTrailExtent();
}

void TrajectoryView::ShowPicture() {
    SetOverlay(MakeOverlay());
    SyncBitmapView();
}

// What was newly uncovered may hold bodies; on a screen of another scale the discs are blurred.
void TrajectoryView::FrameResized(BRect /*bounds*/) {
    EraseDiscs(true);
    DrawDiscs();
}

// --- The map ---

void TrajectoryView::SetSegmentLength(float length) {
    const ViewLock lock(this);
    if (lock) cache_.SetSegmentLength(length);
}

void TrajectoryView::SetReference(std::vector<TrajectoryCache::Member> members) {
    const ViewLock lock(this);
    if (lock) cache_.SetReference(std::move(members));
}

void TrajectoryView::SetTurning(const std::optional<TrajectoryCache::Turning>& turning) {
    const ViewLock lock(this);
    if (lock) cache_.SetTurning(turning);
}

void TrajectoryView::SetMarked(bool areMarked) {
    const ViewLock lock(this);
    if (!lock) return;
    EraseDiscs(true);
    cache_.SetMarked(areMarked);
    cache_.MakeDiscDomains();
    DrawDiscs();
}

void TrajectoryView::MakeDiscDomains() {
    const ViewLock lock(this);
    if (lock) cache_.MakeDiscDomains();
}

void TrajectoryView::SetLastDisp() {
    const ViewLock lock(this);
    if (lock) cache_.SetLastDisp();
}
