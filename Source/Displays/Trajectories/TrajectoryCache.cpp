#include "Displays/Trajectories/TrajectoryCache.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "Displays/Trajectories/TrajectoryMap.h"
#include "Model/Systems/Body.h"

namespace {

// Around a disc, for the smoothed edge.
constexpr float kDiscEdge = 1.5f;

ThreeVector PlaceOf(const double* positions, int32 body) {
    const double* const place = positions + 3 * static_cast<std::size_t>(body);
    return {place[0], place[1], place[2]};
}

}  // namespace

// --- Sizes ---

void TrajectoryCache::ResizeCache(int32 reports, int32 bodies) {
    const auto count = static_cast<std::size_t>(bodies);
    // A batch of other bodies cannot be drawn any more.
    if (bodies != CountBodies()) reports_ = reportsDrawn_ = 0;
    try {
        ResizeTables(static_cast<std::size_t>(reports), count);
        capacity_ = reports;
    } catch (const std::bad_alloc&) {
        // Without a trail there is at least the last report of each batch. Where there is no memory
        // even for that no bodies are shown, until there is.
        reports_ = reportsDrawn_ = capacity_ = 0;
        try {
            ResizeTables(1, count);
            capacity_ = 1;
        } catch (const std::bad_alloc&) {
            ResizeTables(0, 0);
        }
    }
}

// Larger tables than are needed are given back.
void TrajectoryCache::ResizeTables(std::size_t reports, std::size_t bodies) {
    const auto resize = [](auto* table, std::size_t size) {
        if (table->capacity() > 2 * size) *table = {};
        table->resize(size);
    };
    resize(&positions_, 3 * reports * bodies);
    resize(&trailPoints_, (reports + 1) * bodies);
    lastPositions_.resize(3 * bodies);
    pens_.resize(bodies);
    discs_.resize(bodies);
}

void TrajectoryCache::ResizeForReports(int32 reports, int32 bodies) {
    if (reports > capacity_ || bodies > CountBodies()) ResizeCache(reports, bodies);
}

// --- What bodies look like, and where they are ---

void TrajectoryCache::CacheDrawOptions(const std::vector<Body*>& bodies) {
    const std::size_t count = std::min(bodies.size(), discs_.size());
    for (std::size_t i = 0; i < count; i++) {
        const Body& body = *bodies[i];
        pens_[i].isOn = body.TrailOn();
        pens_[i].color = body.TrailColor();
        discs_[i].isOn = body.DiscOn();
        discs_[i].color = body.DiscColor();
        discs_[i].bodyRadius = body.Radius();
    }
    MakeDiscDomains();
}

void TrajectoryCache::MakeDiscDomains() {
    for (Disc& disc : discs_) {
        disc.radius = map_->DiscSize(disc.bodyRadius);
        const float radius = IsMarked(disc) ? kMarkReach : disc.radius;
        const float side = 2.0f * round_to_unit(radius + kDiscEdge);
        disc.domain = {0.0f, 0.0f, side, side};
    }
}

void TrajectoryCache::CacheInitialPositions(const std::vector<Body*>& bodies) {
    const std::size_t count = std::min(bodies.size(), discs_.size());
    for (std::size_t i = 0; i < count; i++) {
        const ThreeVector position = bodies[i]->Position();
        lastPositions_[3 * i] = position.x;
        lastPositions_[3 * i + 1] = position.y;
        lastPositions_[3 * i + 2] = position.z;
    }
    reports_ = reportsDrawn_ = 0;
    SetLastDisp();
}

ThreeVector TrajectoryCache::LastPosition(int32 body) const {
    return PlaceOf(lastPositions_.data(), body);
}

BPoint TrajectoryCache::LastPoint(int32 body, const FrameMoment& frame) const {
    const ThreeVector place = frame.See(LastPosition(body));
    return map_->Map(place.x, place.y, place.z);
}

void TrajectoryCache::SetLastDisp() {
    const FrameMoment frame = LastFrame();
    for (int32 i = 0; i < CountBodies(); i++)
        SetDiscCenter(i, LastPoint(i, frame));
}

BRect TrajectoryCache::DomainCenteredAt(int32 body, BPoint point) const {
    const BRect& domain = DiscAt(body).domain;
    const float left = round_to_unit(point.x - domain.Width() / 2);
    const float top = round_to_unit(point.y - domain.Height() / 2);
    return {left, top, left + domain.Width(), top + domain.Height()};
}

// --- What stands still ---

ThreeVector TrajectoryCache::ReferenceIn(const double* positions) const {
    ThreeVector sum;
    double weight = 0.0;
    for (const Member& member : reference_) {
        if (member.body >= CountBodies()) continue;
        const ThreeVector position = PlaceOf(positions, member.body);
        // One body alone stands still to the last bit.
        if (reference_.size() == 1) return position;
        sum += position * member.weight;
        weight += member.weight;
    }
    return weight > 0.0 ? sum * (1.0 / weight) : ThreeVector{};
}

FrameMoment TrajectoryCache::FrameIn(const std::vector<double>& positions,
                                     std::size_t first) const {
    const double* const places = positions.data() + first;  // there may be no bodies
    FrameMoment frame{ReferenceIn(places), std::nullopt};
    if (turning_ && std::max(turning_->first, turning_->second) < CountBodies())
        frame.axes = TurningAxes::Of(
            PlaceOf(places, turning_->second) - PlaceOf(places, turning_->first), turning_->axis);
    return frame;
}

// --- Batches ---

void TrajectoryCache::ReadPositions(int32 reports, const double* positions) {
    const std::size_t bodies = discs_.size();
    if (reports > capacity_) ResizeForReports(reports, CountBodies());
    if (bodies != discs_.size()) return;
    // Where memory is lacking the last ones are what counts.
    const std::size_t stride = 3 * bodies;
    const int32 kept = std::min(reports, capacity_);
    std::copy_n(positions + static_cast<std::size_t>(reports - kept) * stride,
                static_cast<std::size_t>(kept) * stride, positions_.begin());
    reports_ = kept;
    reportsDrawn_ = 0;
}

void TrajectoryCache::MakeTrails() {
    const std::size_t bodies = discs_.size();
    for (std::size_t i = 0; i < bodies; i++) {
        Pen& pen = pens_[i];
        trailPoints_[i * TrailStride()] = pen.end = discs_[i].center;
        pen.travelled = 0.0f;
        pen.count = 1;
    }
    for (int32 report = 0; report < reports_; report++) {
        const std::size_t first = 3 * bodies * static_cast<std::size_t>(report);
        const FrameMoment frame = FrameIn(positions_, first);
        const double* place = positions_.data() + first;  // there may be no bodies
        for (std::size_t i = 0; i < bodies; i++, place += 3) {
            Pen& pen = pens_[i];
            const ThreeVector seen = frame.See({place[0], place[1], place[2]});
            const BPoint to = map_->Map(seen.x, seen.y, seen.z);
            pen.travelled = std::abs(to.x - pen.end.x) + pen.travelled + std::abs(to.y - pen.end.y);
            pen.end = to;
            if (pen.travelled >= segmentLength_ || report == reports_ - 1) {
                trailPoints_[i * TrailStride() + static_cast<std::size_t>(pen.count)] = to;
                pen.count++;
                pen.travelled = 0.0f;
                if (pen.isOn) trailExtent_.Add(seen);
            }
        }
    }
}

TrajectoryCache::Trail TrajectoryCache::TrailAt(int32 body) const {
    const Pen& pen = pens_[static_cast<std::size_t>(body)];
    const BPoint* const points = &trailPoints_[static_cast<std::size_t>(body) * TrailStride()];
    return {points, pen.isOn ? pen.count : 0, pen.color};
}

void TrajectoryCache::SetLastR() {
    if (reports_ == 0) return;
    const auto last =
        positions_.begin() + static_cast<std::ptrdiff_t>(lastPositions_.size()) * (reports_ - 1);
    std::copy_n(last, lastPositions_.size(), lastPositions_.begin());
}
