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

// Where something becomes true on the way, to the last place.
template <class Holds>
double FirstTheta(double before, double after, const Holds& holds) {
    for (;;) {
        const double middle = before + (after - before) / 2;
        if (!(middle > before && middle < after)) return after;
        (holds(middle) ? after : before) = middle;
    }
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
    pull_ = 0.0;
    ids_.clear();
    names_.clear();
    gm_.clear();
    before_.clear();
    for (const Body* const body : bodies) {
        ids_.push_back(body->ID());
        names_.push_back(CsvName(body->Name()));
        gm_.push_back(body->M());
        pull_ += body->M();
        before_.push_back({body->Position(), body->Velocity()});
    }
    if (escapeDistance_) return;
    double farthest = 0.0;
    for (int32 i = 0; i < Count(); i++)
        farthest = std::max(farthest, Length(FromOthers(i, [&](int32 body) {
                                                 return before_[static_cast<std::size_t>(body)];
                                             }).position));
    escapeDistance_ = kFarAway * farthest;
}

EventLog::State EventLog::StateOf(const Piece& piece, int32 body, double theta) const {
    const SeriesStep::BodyMotion motion = piece.step.BodyAt(body, theta);
    return {motion.position, motion.velocity};
}

EventLog::State EventLog::ApartOf(const Piece& piece, int32 body, int32 other, double theta) const {
    const State a = StateOf(piece, body, theta);
    const State b = StateOf(piece, other, theta);
    return {a.position - b.position, a.velocity - b.velocity};
}

template <class StateOfBody>
EventLog::State EventLog::FromOthers(int32 body, const StateOfBody& stateOf) const {
    State sum;
    for (int32 i = 0; i < massive_; i++) {
        if (i == body) continue;
        const State state = stateOf(i);
        sum.position += state.position * gm_[static_cast<std::size_t>(i)];
        sum.velocity += state.velocity * gm_[static_cast<std::size_t>(i)];
    }
    const State own = stateOf(body);
    const double pull = pull_ - gm_[static_cast<std::size_t>(body)];
    if (!(pull > 0.0)) return own;
    return {own.position - sum.position * (1.0 / pull), own.velocity - sum.velocity * (1.0 / pull)};
}

bool EventLog::IsEscaped(const State& apart) const {
    const double distance = Length(apart.position);
    return distance > *escapeDistance_ &&
           Dot(apart.velocity, apart.velocity) / 2 > pull_ / distance;
}

void EventLog::Moved(const Piece& piece) {
    now_.clear();
    for (int32 i = 0; i < Count(); i++)
        now_.push_back(StateOf(piece, i, piece.to));
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
    const auto growth = [way](const State& a, const State& b) {
        return way * Dot(a.position - b.position, a.velocity - b.velocity);
    };
    for (std::size_t i = 0; i < static_cast<std::size_t>(massive_); i++)
        for (std::size_t j = i + 1; j < now_.size(); j++) {
            if (!(growth(before_[j], before_[i]) < 0.0 && growth(now_[j], now_[i]) >= 0.0))
                continue;
            const auto body = static_cast<int32>(i);
            const auto other = static_cast<int32>(j);
            const double theta = FirstTheta(piece.from, piece.to, [&](double at) {
                const State apart = ApartOf(piece, body, other, at);
                return way * Dot(apart.position, apart.velocity) >= 0.0;
            });
            events_.push_back({piece.step.TimeAt(theta), kApproach, body, other,
                               ApartOf(piece, body, other, theta)});
        }
}

void EventLog::FindCrossings(const Piece& piece) {
    for (std::size_t i = 0; i < now_.size(); i++) {
        const bool wasBelow = before_[i].position.z < 0.0;
        if (wasBelow == (now_[i].position.z < 0.0)) continue;
        const auto body = static_cast<int32>(i);
        const double theta = FirstTheta(piece.from, piece.to, [&](double at) {
            return (StateOf(piece, body, at).position.z < 0.0) != wasBelow;
        });
        events_.push_back(
            {piece.step.TimeAt(theta), kCrossing, body, -1, StateOf(piece, body, theta)});
    }
}

void EventLog::FindEscapes(const Piece& piece) {
    const auto among = [](const std::vector<State>& states) {
        return [&states](int32 body) { return states[static_cast<std::size_t>(body)]; };
    };
    for (int32 body = 0; body < Count(); body++) {
        // Most are nowhere near.
        if (!IsEscaped(FromOthers(body, among(now_))) ||
            IsEscaped(FromOthers(body, among(before_))))
            continue;
        const auto at = [&](double theta) {
            return FromOthers(body, [&](int32 i) { return StateOf(piece, i, theta); });
        };
        const double theta =
            FirstTheta(piece.from, piece.to, [&](double share) { return IsEscaped(at(share)); });
        events_.push_back({piece.step.TimeAt(theta), kEscape, body, -1, at(theta)});
    }
}

void EventLog::Touched(double time, const BodyArrays& bodies,
                       const std::vector<CollidingPair>& pairs) {
    const auto state = [&bodies](int32 body) {
        const auto& r = bodies.position;
        const auto& v = bodies.velocity;
        return State{{r[0][body], r[1][body], r[2][body]}, {v[0][body], v[1][body], v[2][body]}};
    };
    for (const CollidingPair& pair : pairs) {
        const State a = state(pair.earlier);
        const State b = state(pair.later);
        Write({time,
               kContact,
               pair.earlier,
               pair.later,
               {a.position - b.position, a.velocity - b.velocity}});
    }
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
