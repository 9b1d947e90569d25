#include "Run/EventLog.h"

#include <algorithm>

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
    const int error = file_.Open(path);
    if (error == 0) file_.Write(kHeader);
    return error;
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
}

void EventLog::Moved(const Piece& piece) {
    now_.clear();
    for (int32 i = 0; i < Count(); i++)
        now_.push_back(PointAt(piece, i, piece.to));
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

// A pair comes nearest where it stops to approach; between two reports it does so once at the most.
void EventLog::FindApproaches(const Piece& piece) {
    const double way = piece.IsBackwards() ? -1.0 : 1.0;
    const auto growth = [way](const PathPoint& a, const PathPoint& b) {
        const PathPoint apart = a - b;
        return way * Dot(apart.position, apart.velocity);
    };
    for (std::size_t i = 0; i < static_cast<std::size_t>(massive_); i++)
        for (std::size_t j = i + 1; j < now_.size(); j++) {
            if (!(growth(before_[j], before_[i]) < 0.0 && growth(now_[j], now_[i]) >= 0.0))
                continue;
            const auto body = static_cast<int32>(i);
            const auto other = static_cast<int32>(j);
            const auto apart = [&](double theta) {
                return PointAt(piece, body, theta) - PointAt(piece, other, theta);
            };
            const double theta = FirstTheta(piece.from, piece.to, [&](double at) {
                const PathPoint point = apart(at);
                return way * Dot(point.position, point.velocity) >= 0.0;
            });
            events_.push_back({piece.step.TimeAt(theta), kApproach, body, other, apart(theta)});
        }
}

// Once between two reports, or there and back.
void EventLog::FindCrossings(const Piece& piece) {
    const double way = piece.IsBackwards() ? -1.0 : 1.0;
    for (std::size_t i = 0; i < now_.size(); i++) {
        const auto body = static_cast<int32>(i);
        const double side = before_[i].position.z < 0.0 ? -way : way;
        if ((before_[i].position.z < 0.0) != (now_[i].position.z < 0.0)) {
            FindCrossing(piece, body, piece.from, piece.to);
        } else if (side * before_[i].velocity.z < 0.0 && side * now_[i].velocity.z > 0.0) {
            const double turn = FirstTheta(piece.from, piece.to, [&](double theta) {
                return side * PointAt(piece, body, theta).velocity.z >= 0.0;
            });
            if ((PointAt(piece, body, turn).position.z < 0.0) == (now_[i].position.z < 0.0))
                continue;
            FindCrossing(piece, body, piece.from, turn);
            FindCrossing(piece, body, turn, piece.to);
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
    for (int32 body = 0; body < Count(); body++) {
        // Most are nowhere near.
        if (!escape_.IsEscaped(escape_.FromOthers(body, Among(now_))) ||
            escape_.IsEscaped(escape_.FromOthers(body, Among(before_))))
            continue;
        const auto at = [&](double theta) {
            return escape_.FromOthers(body, [&](int32 i) { return PointAt(piece, i, theta); });
        };
        const double theta = FirstTheta(piece.from, piece.to,
                                        [&](double share) { return escape_.IsEscaped(at(share)); });
        events_.push_back({piece.step.TimeAt(theta), kEscape, body, -1, at(theta)});
    }
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
