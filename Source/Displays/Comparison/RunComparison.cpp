#include "Displays/Comparison/RunComparison.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Projection/BodyLabels.h"
#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Model/Units/FittingUnit.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/Views.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/RunHistory.h"

namespace {

// More rings nobody can tell apart.
constexpr std::size_t kMaxRings = 200;
constexpr float kMinRing = 4.0f;  // radius, pixels
// Evaluations of pairs of bodies on the thread of the finder. While somebody waits: how often each
// pair, which is a hundredth of a radian of the closest one or less, and how many of them.
constexpr double kMaxPairs = 1e8;
constexpr double kMaxAtOnce = 100.0;
constexpr double kMaxPairsAtOnce = 1e6;
constexpr int kDistanceDigits = 4;

}  // namespace

RunComparison::RunComparison(TrajectoryDisplay* display, const DisplayContext& context)
    : display_(display), context_(context) {}

RunComparison::~RunComparison() = default;

// --- What is compared ---

void RunComparison::CompareWith(const AbEpoch* other, std::string name) {
    const auto* const real = dynamic_cast<const Epoch*>(other);
    if (finder_ != nullptr) finder_->WantNothing();
    Forget();
    other_ = real;
    name_ = std::move(name);
    if (real == nullptr || history_ == nullptr) {
        other_ = nullptr;
        return;
    }
    life_ = real->Life();
    ReadEnd(*real);
}

void RunComparison::Forget() {
    const std::lock_guard lock(mutex_);
    asked_++;
    isMeasuring_ = false;
    found_.reset();
}

void RunComparison::ReadEnd(const AbEpoch& other) {
    EpochPortal portal(*display_->Epoch());
    portal.SetEpochTo(const_cast<AbEpoch*>(&other));  // only looked at
    end_ = StateOf(portal);
    looks_.clear();
    for (const Body* const body : portal.BodiesInMassOrder())
        looks_[body->ID()] = {body->DiscColor(), body->Radius()};
    line_ = ReadRuns(portal, *history_);
    // What has merged looks as it did when its run began.
    for (const TimeLine::Run& run : line_.runs)
        for (const int64 id : history_->BodiesOf(run.epoch))
            if (const auto* const body =
                    dynamic_cast<const Body*>(run.epoch->Parent()->SystemFromID(id));
                body != nullptr)
                looks_.try_emplace(id, Look{body->DiscColor(), body->Radius()});
}

void RunComparison::ModelChanged() {
    if (!IsOn()) return;
    const ReadGuard guard(display_->Epoch());
    if (life_.expired() || !display_->Epoch()->HasEpoch(other_))
        CompareWith(nullptr, {});
    else
        ReadEnd(*other_);
}

const AbEpoch* RunComparison::RunAt(double time) const {
    const TimeLine::Run* run = line_.RunAt(time);
    if (run == nullptr && IsOver(time) && HasEnd()) run = &line_.runs.back();
    return run != nullptr && run->isKept ? run->epoch : nullptr;
}

// The last run is kept.
bool RunComparison::HasEnd() const {
    return !line_.IsEmpty() && line_.runs.back().isKept;
}

// Behind the last report, and of a run that is not kept, only the end is known.
bool RunComparison::IsOver(double time) const {
    const TimeLine::Run* const run = line_.RunAt(time);
    if (run != nullptr && run->isKept) return false;
    return !HasEnd() || line_.IsBefore(line_.End(), time);
}

// --- How far they are apart ---

BodyPlaces RunComparison::ShownPlaces(double time, const BodyLabels& labels) const {
    const TrajectoryCache& cache = display_->View()->Cache();
    const auto count = std::min(cache.CountBodies(), static_cast<int32>(labels.bodies.size()));
    BodyPlaces places;
    places.time = time;
    for (int32 body = 0; body < count; body++) {
        places.ids.push_back(labels.bodies[static_cast<std::size_t>(body)].id);
        places.places.push_back(cache.LastPosition(body));
    }
    return places;
}

void RunComparison::Measure(double time, const BodyLabels& labels) {
    if (!IsOn()) return;
    BodyPlaces shown = ShownPlaces(time, labels);
    std::unique_lock lock(mutex_);
    if (isMeasuring_ || (found_ && found_->time == time)) return;
    if (IsAtEnd(time)) {
        // Of its end nothing follows for much later times.
        const double pairs =
            static_cast<double>(end_.CountBodies()) * static_cast<double>(end_.CountMassive());
        found_ = {time,
                  LargestSeparation(end_, shown, std::min(kMaxPairsAtOnce, kMaxAtOnce * pairs))};
        return;
    }
    const AbEpoch* const run = RunAt(time);
    if (run == nullptr) {
        found_ = {time, std::nullopt};
        return;
    }
    measured_ = std::move(shown);
    isMeasuring_ = true;
    const MomentFinder::Wish wish{run, time, 0, ++asked_};
    lock.unlock();
    if (finder_ == nullptr)
        finder_ = std::make_unique<MomentFinder>(
            display_->Epoch(), history_,
            [this](const MomentFinder::Wish& about, const std::optional<Moment>& moment) {
                NoteFound(about, moment);
            },
            [] {});
    finder_->Want(wish);
}

void RunComparison::NoteFound(const MomentFinder::Wish& wish, const std::optional<Moment>& moment) {
    SystemState state;
    if (moment) {
        const ReadGuard guard(display_->Epoch());
        state = StateOf(moment->PortalFrom(*display_->Epoch()));
    }
    BodyPlaces measured;
    {
        const std::lock_guard lock(mutex_);
        if (wish.number != asked_) return;
        measured = measured_;
    }
    Found found{measured.time, std::nullopt};
    if (moment) found.separation = LargestSeparation(std::move(state), measured, kMaxPairs);
    {
        const std::lock_guard lock(mutex_);
        if (wish.number != asked_) return;
        isMeasuring_ = false;
        found_ = found;
    }
    WindowServer::Deliver(display_, BMessage(kChanged));
}

std::string RunComparison::DistanceText(double distance, double unit) const {
    const double shown = SmallerUnit(distance, unit);
    return print_double(distance / shown, kDistanceDigits) + ' ' +
           context_.distanceUnits->Abbreviation(shown);
}

std::vector<std::string> RunComparison::Lines(double time, double unit,
                                              const BodyLabels& labels) const {
    const InterfaceTexts& texts = *context_.texts;
    std::string name = name_;
    if (!HasEnd())
        name = FillIn(texts.Label(kTextOnlyEnd), {name_});
    else if (IsOver(time))
        name = FillIn(texts.Label(kTextHasEnded), {name_});
    std::vector<std::string> lines{FillIn(texts.Label(kTextCompared), {name})};
    if (std::string distance = DistanceLine(unit, labels); !distance.empty())
        lines.push_back(std::move(distance));
    return lines;
}

std::string RunComparison::DistanceLine(double unit, const BodyLabels& labels) const {
    const std::lock_guard lock(mutex_);
    if (!found_ || !found_->separation) return {};
    const auto body = std::ranges::find(labels.bodies, found_->separation->body,
                                        [](const BodyLabels::Label& label) { return label.id; });
    return FillIn(context_.texts->Label(kTextSeparation),
                  {DistanceText(found_->separation->distance, unit),
                   body == labels.bodies.end() ? std::string() : body->name});
}

std::optional<std::string> RunComparison::TakeDistance(double unit, const BodyLabels& labels) {
    std::string line = IsOn() ? DistanceLine(unit, labels) : std::string();
    if (line == told_) return std::nullopt;
    return told_ = std::move(line);
}

// --- Where they are ---

std::optional<ThreeVector> RunComparison::PlaceOf(int64 body, double time) const {
    if (IsAtEnd(time)) {
        const auto found = std::ranges::find(end_.ids, body);
        if (found == end_.ids.end()) return std::nullopt;
        return end_.Position(static_cast<std::size_t>(found - end_.ids.begin()));
    }
    const std::vector<Sample> samples = history_->Samples(RunAt(time), body, time, time);
    for (std::size_t i = 1; i < samples.size(); i++)
        if (samples[i].isJoined && samples[i - 1].time <= time && time <= samples[i].time)
            return Between(samples[i - 1], samples[i], time).position;
    return std::nullopt;
}

// What stands still in the display stands still in both runs.
FrameMoment RunComparison::FrameAt(double time, const BodyLabels& labels) const {
    const TrajectoryCache& cache = display_->View()->Cache();
    FrameMoment frame = cache.LastFrame();
    const auto place = [&](int32 body) {
        const bool isThere = body >= 0 && body < static_cast<int32>(labels.bodies.size());
        return isThere ? PlaceOf(labels.bodies[static_cast<std::size_t>(body)].id, time)
                       : std::nullopt;
    };
    ThreeVector sum;
    double weight = 0.0;
    for (const TrajectoryCache::Member& member : cache.Reference())
        if (const auto at = place(member.body)) {
            sum += *at * member.weight;
            weight += member.weight;
        }
    if (weight > 0.0) frame.origin = sum * (1.0 / weight);
    if (const auto& turning = cache.GetTurning(); turning) {
        const auto first = place(turning->first);
        const auto second = place(turning->second);
        if (first && second) frame.axes = TurningAxes::Of(*second - *first, turning->axis);
    }
    return frame;
}

void RunComparison::AddRings(double time, const BodyLabels& labels,
                             std::vector<OverlayItem>* items) const {
    if (!IsOn()) return;
    const FrameMoment frame = FrameAt(time, labels);
    const std::vector<int64> ids = IsAtEnd(time) ? end_.ids : history_->BodiesOf(RunAt(time));
    const std::size_t count = std::min(ids.size(), kMaxRings);
    for (std::size_t i = 0; i < count; i++) {
        const auto place = PlaceOf(ids[i], time);
        const auto look = looks_.find(ids[i]);
        if (!place || look == looks_.end()) continue;
        const ThreeVector seen = frame.See(*place);
        OverlayItem ring;
        ring.kind = OverlayItem::Kind::kRing;
        ring.anchor = OverlayItem::Anchor::kCanvas;
        ring.where = display_->Map(seen.x, seen.y, seen.z);
        ring.color = look->second.color;
        ring.length = 2.0f * std::max(kMinRing, display_->DiscSize(look->second.radius));
        items->push_back(std::move(ring));
    }
}
