#include "Run/EventLog.h"

#include <algorithm>

#include "Calculation/Series/PathCuts.h"
#include "Calculation/Series/SeriesStep.h"
#include "Model/Systems/Body.h"
#include "Run/CsvText.h"

namespace {

constexpr std::string_view kContact = "contact";
constexpr std::string_view kApproach = "closest approach";
constexpr std::string_view kCrossing = "plane crossing";
constexpr std::string_view kEscape = "escape";
// Of the farthest body.
constexpr double kFarAway = 10.0;

PathPoint PointAt(const MotionWatcher::Piece& piece, int32 body, double theta) {
    const SeriesStep::BodyMotion motion = piece.step.BodyAt(body, theta);
    return {motion.position, motion.velocity};
}

auto Among(const std::vector<PathPoint>& points) {
    return [&points](int32 body) { return points[static_cast<std::size_t>(body)]; };
}

}  // namespace

int EventLog::Open(const std::string& path) {
    return file_.Open(path);
}

void EventLog::Begin(std::optional<double> escapeDistance) {
    escapeDistance_ = escapeDistance;
    row_ = kHeader;
    file_.Write(row_);
}

void EventLog::GoOn(const EventMark& mark) {
    escapeDistance_ = mark.escapeDistance;
    row_ = mark.lastRow;
    file_.Keep(mark.size);
}

std::optional<EventMark> EventLog::Mark() {
    if (!file_.IsOpen() || file_.Sync() != 0) return std::nullopt;
    const std::optional<int64> size = file_.Size();
    if (!size) return std::nullopt;
    return EventMark{*size, row_, escapeDistance_.value_or(0.0)};
}

int EventLog::Close() {
    return file_.IsOpen() ? file_.Close() : 0;
}

void EventLog::BodiesAre(double /*time*/, const std::vector<Body*>& bodies, int32 massive) {
    massive_ = massive;
    ids_.clear();
    names_.clear();
    before_.clear();
    for (const Body* const body : bodies) {
        ids_.push_back(body->ID());
        names_.push_back(CsvName(body->Name()));
        before_.push_back({body->Position(), body->Velocity()});
    }
    escape_.SetBodies(bodies);
    if (!escapeDistance_) {
        double farthest = 0.0;
        for (int32 i = 0; i < Count(); i++)
            farthest = std::max(farthest, Length(escape_.FromOthers(i, Among(before_)).position));
        escapeDistance_ = kFarAway * farthest;
    }
    escape_.SetDistance(*escapeDistance_);
    seen_.resize(before_.size());
    seenBefore_.clear();
    for (int32 i = 0; i < Count(); i++)
        seenBefore_.push_back(escape_.FromOthers(i, Among(before_)));
}

void EventLog::Moved(const Piece& piece) {
    way_ = piece.IsBackwards() ? -1.0 : 1.0;
    Sample(piece);
    events_.clear();
    FindApproaches(piece);
    FindCrossings(piece);
    FindEscapes(piece);
    std::stable_sort(events_.begin(), events_.end(), [&](const Event& a, const Event& b) {
        return piece.IsBackwards() ? a.time > b.time : a.time < b.time;
    });
    for (const Event& event : events_)
        Write(event);
    std::swap(before_, now_);
}

void EventLog::Sample(const Piece& piece) {
    now_.clear();
    pullBefore_.clear();
    pull_.clear();
    for (int32 i = 0; i < Count(); i++) {
        const SeriesStep::BodyMotion motion = piece.step.BodyAt(i, piece.to);
        now_.push_back({motion.position, motion.velocity});
        pull_.push_back(motion.acceleration);
        pullBefore_.push_back(piece.step.BodyAt(i, piece.from).acceleration);
    }
}

// A pair comes nearest where it stops to approach.
void EventLog::FindApproaches(const Piece& piece) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(massive_); i++)
        for (std::size_t j = i + 1; j < now_.size(); j++)
            if (MayApproach(i, j))
                FindApproaches(piece, static_cast<int32>(i), static_cast<int32>(j));
}

// What has not turned far since the last report stops to approach between the two if it did so then
// and does not now, or if it turns the right way at both ends. Of the others the series tells.
bool EventLog::MayApproach(std::size_t body, std::size_t other) const {
    const auto hasTurned = [](const ThreeVector& from, const ThreeVector& to) {
        constexpr double kCosine = 0.9;  // of 26 degrees
        const double product = Dot(from, to);
        return product < 0.0 ||
               product * product < kCosine * kCosine * Dot(from, from) * Dot(to, to);
    };
    const PathPoint from = before_[other] - before_[body];
    const PathPoint to = now_[other] - now_[body];
    const ThreeVector pullFrom = pullBefore_[other] - pullBefore_[body];
    const ThreeVector pullTo = pull_[other] - pull_[body];
    const double growthFrom = way_ * Dot(from.position, from.velocity);
    const double growthTo = way_ * Dot(to.position, to.velocity);
    if (growthFrom < 0.0 && growthTo >= 0.0) return true;
    if (hasTurned(from.velocity, to.velocity) || hasTurned(pullFrom, pullTo)) return true;
    const double bendFrom = Dot(from.velocity, from.velocity) + Dot(from.position, pullFrom);
    const double bendTo = Dot(to.velocity, to.velocity) + Dot(to.position, pullTo);
    return growthTo >= 0.0 ? bendFrom < 0.0 && bendTo > 0.0 : bendFrom > 0.0 && bendTo < 0.0;
}

void EventLog::FindApproaches(const Piece& piece, int32 body, int32 other) {
    const auto apart = [&](double theta) {
        return PointAt(piece, body, theta) - PointAt(piece, other, theta);
    };
    const auto isLeaving = [this](const PathPoint& point) {
        return way_ * Dot(point.position, point.velocity) >= 0.0;
    };
    const auto at = [body, other](const std::vector<PathPoint>& points) {
        return points[static_cast<std::size_t>(body)] - points[static_cast<std::size_t>(other)];
    };
    bool isLeft = isLeaving(at(before_));
    double last = piece.from;
    for (const double cut : CutsBetweenTurns(piece.step, body, other, piece.from, piece.to)) {
        if (cut == piece.from) continue;
        const bool wasLeft = isLeft;
        isLeft = isLeaving(cut == piece.to ? at(now_) : apart(cut));
        if (isLeft && !wasLeft) {
            const double theta =
                FirstTheta(last, cut, [&](double share) { return isLeaving(apart(share)); });
            events_.push_back({piece.step.TimeAt(theta), kApproach, body, other, apart(theta)});
        }
        last = cut;
    }
}

void EventLog::FindCrossings(const Piece& piece) {
    for (std::size_t i = 0; i < now_.size(); i++) {
        const auto body = static_cast<int32>(i);
        bool isBelow = before_[i].position.z < 0.0;
        double last = piece.from;
        for (const double cut : CutsBetweenCrossings(piece.step, body, piece.from, piece.to)) {
            if (cut == piece.from) continue;
            const bool wasBelow = isBelow;
            isBelow = (cut == piece.to ? now_[i] : PointAt(piece, body, cut)).position.z < 0.0;
            if (isBelow != wasBelow) FindCrossing(piece, body, last, cut);
            last = cut;
        }
    }
}

void EventLog::FindCrossing(const Piece& piece, int32 body, double from, double to) {
    const bool isBelow = PointAt(piece, body, to).position.z < 0.0;
    const double theta = FirstTheta(from, to, [&](double at) {
        return (PointAt(piece, body, at).position.z < 0.0) == isBelow;
    });
    events_.push_back({piece.step.TimeAt(theta), kCrossing, body, -1, PointAt(piece, body, theta)});
}

void EventLog::FindEscapes(const Piece& piece) {
    for (int32 body = 0; body < Count(); body++)
        seen_[static_cast<std::size_t>(body)] = escape_.FromOthers(body, Among(now_));
    for (int32 body = 0; body < Count(); body++)
        FindEscapes(piece, body);
    std::swap(seenBefore_, seen_);
}

// Once on the way to where it turns from coming to going, or back, and once from there on.
void EventLog::FindEscapes(const Piece& piece, int32 body) {
    bool isAway = escape_.IsEscaped(seenBefore_[static_cast<std::size_t>(body)]);
    double last = piece.from;
    for (const double cut : {NearestOrFarthest(piece, body), piece.to}) {
        if (cut == last) continue;
        const bool wasAway = isAway;
        isAway = escape_.IsEscaped(cut == piece.to ? seen_[static_cast<std::size_t>(body)]
                                                   : SeenAt(piece, body, cut));
        if (isAway && !wasAway) {
            const double theta = FirstTheta(
                last, cut, [&](double at) { return escape_.IsEscaped(SeenAt(piece, body, at)); });
            events_.push_back(
                {piece.step.TimeAt(theta), kEscape, body, -1, SeenAt(piece, body, theta)});
        }
        last = cut;
    }
}

PathPoint EventLog::SeenAt(const Piece& piece, int32 body, double theta) const {
    return escape_.FromOthers(body, [&](int32 i) { return PointAt(piece, i, theta); });
}

// The end if it does not turn, or far from where it escapes.
double EventLog::NearestOrFarthest(const Piece& piece, int32 body) const {
    const auto comes = [](const PathPoint& seen) {
        return Dot(seen.position, seen.velocity) < 0.0;
    };
    constexpr double kFar = 0.5;
    const PathPoint& from = seenBefore_[static_cast<std::size_t>(body)];
    const PathPoint& to = seen_[static_cast<std::size_t>(body)];
    const bool cameAtFirst = comes(from);
    if (comes(to) == cameAtFirst) return piece.to;
    const double farther = std::max(Length(from.position), Length(to.position));
    if (farther < kFar * *escapeDistance_) return piece.to;
    return FirstTheta(piece.from, piece.to,
                      [&](double at) { return comes(SeenAt(piece, body, at)) != cameAtFirst; });
}

void EventLog::Touched(double time, const BodyArrays& bodies,
                       const std::vector<CollidingPair>& pairs) {
    for (const CollidingPair& pair : pairs)
        Write({time, kContact, pair.earlier, pair.later,
               PointOf(bodies, pair.earlier) - PointOf(bodies, pair.later)});
}

void EventLog::Write(const Event& event) {
    row_.clear();
    AppendCsv(&row_, event.time);
    row_ += ',';
    row_ += event.name;
    for (const int32 body : {event.body, event.other}) {
        row_ += ',';
        if (body >= 0) AppendCsv(&row_, ids_[static_cast<std::size_t>(body)]);
        row_ += ',';
        if (body >= 0) row_ += names_[static_cast<std::size_t>(body)];
    }
    for (const ThreeVector& triple : {event.apart.position, event.apart.velocity}) {
        row_ += ',';
        AppendCsv(&row_, Length(triple));
    }
    row_ += '\n';
    file_.Write(row_);
}
