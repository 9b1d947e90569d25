#include "Simulation/History/KeptRun.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>
#include <numeric>
#include <utility>

#include "Model/Epochs/EpochLimits.h"

namespace {

// Radians by which the fastest pair turns from look to look, at the most.
constexpr double kTurnPerLook = 0.02;
constexpr double kMaxReportsPerLook = 1024.0;
// Of all samples: what thinning the older half must free to be enough.
constexpr std::size_t kEnough = 16;

// A step is at most 10^(1/8) times cutoff^(1/(order - 1)) of the fastest pair's time scale. Higher
// orders report no more often than paths bend.
int64 ReportsPerLook(int32 order, double cutoff) {
    if (order > kMaxLowOrder) return 1;
    const int32 used = std::max(order, kMinOrder);
    const double turn = 1.34 * std::pow(cutoff, 1.0 / (used - 1));
    const double reports = std::clamp(kTurnPerLook / turn, 1.0, kMaxReportsPerLook);
    return static_cast<int64>(std::bit_floor(static_cast<uint64>(reports)));
}

ThreeVector VectorAt(const double* coordinates) {
    return {coordinates[0], coordinates[1], coordinates[2]};
}

Sample SampleOf(const SystemState& state, std::size_t body) {
    return {state.time, state.Position(body), state.Velocity(body), false};
}

}  // namespace

KeptRun::KeptRun(RunCheckpoint start)
    : isBackwards_(start.isBackwards),
      reportsPerLook_(ReportsPerLook(start.order, start.cutoff)),
      startTime_(start.state.time),
      timeBeforeLast_(start.state.time),
      checkpoints_(start.state.CountBodies(), start.state.CountMassive(), start.isBackwards) {
    Watch(start);
    start.isPinned = true;
    checkpoints_.Add(std::move(start));
}

KeptRun::KeptRun(const KeptRun& other)
    : isBackwards_(other.isBackwards_),
      reportsPerLook_(other.reportsPerLook_),
      reports_(other.reports_),
      startTime_(other.startTime_),
      timeBeforeLast_(other.timeBeforeLast_),
      tail_(other.tail_),
      radii_(other.radii_),
      places_(other.places_),
      tracks_(other.tracks_),
      samples_(other.samples_),
      wasShort_(other.wasShort_),
      checkpoints_(other.checkpoints_),
      events_(other.events_) {}

std::unique_ptr<KeptRun> KeptRun::Copy() const {
    return std::unique_ptr<KeptRun>(new KeptRun(*this));
}

void KeptRun::Restore(const SystemState& end, std::vector<double> radii, double timeBeforeLast,
                      int64 reports) {
    Leave();
    tracks_.clear();
    samples_ = 0;
    TakeEnd(end, std::move(radii));
    timeBeforeLast_ = timeBeforeLast;
    reports_ = reports;
}

void KeptRun::SetTrack(int64 body, SampleTrack track) {
    SampleTrack& place = tracks_[body];
    samples_ += track.Count() - place.Count();
    place = std::move(track);
}

void KeptRun::GoOn(RunCheckpoint from) {
    from.report = reports_;
    const bool areSameRadii = from.radii == radii_;
    // Nothing has happened to the calculation.
    if (!from.isStart && areSameRadii) return newMergers_.clear();
    from.isPinned = !from.isStart || !IsResultOfMergers(from);
    if (from.isPinned) {
        NoteEdit(from);
        reportsPerLook_ = ReportsPerLook(from.order, from.cutoff);
    }
    newMergers_.clear();
    Watch(from);
    checkpoints_.Add(std::move(from));
}

// A body that goes on as before is watched as before; one that is new, or elsewhere, begins a new
// path, and its former one ends where the body was last.
void KeptRun::Watch(const RunCheckpoint& from) {
    const SystemState& now = from.state;
    std::vector<Watched> watched;
    watched.reserve(now.CountBodies());
    std::vector<bool> goesOn(tail_.CountBodies());
    const bool areWatched = !watched_.empty();
    for (std::size_t i = 0; i < now.CountBodies(); i++) {
        SampleTrack& track = tracks_.try_emplace(now.ids[i], isBackwards_).first->second;
        const auto former = PlaceOf(now.ids[i]);
        const Sample first = SampleOf(now, i);
        if (areWatched && former && IsWhereItWas(first, *former)) {
            goesOn[*former] = true;
            watched.push_back(watched_[*former]);
            continue;
        }
        if (former) {
            AddSample(&track, TailOf(*former));
            goesOn[*former] = true;
        }
        AddSample(&track, first);
        watched.push_back({&track, {}});
        watched.back().chooser.Start(first);
    }
    for (std::size_t i = 0; i < goesOn.size(); i++)
        if (!goesOn[i]) AddSample(&tracks_.at(tail_.ids[i]), TailOf(i));
    watched_ = std::move(watched);
    TakeEnd(now, from.radii);
}

void KeptRun::TakeEnd(const SystemState& end, std::vector<double> radii) {
    tail_ = end;
    radii_ = std::move(radii);
    places_.clear();
    for (std::size_t i = 0; i < tail_.CountBodies(); i++)
        places_.emplace(tail_.ids[i], i);
}

void KeptRun::Add(int32 count, const double* times, const double* positions,
                  const double* velocities) {
    const std::size_t stride = tail_.positions.size();
    for (int64 k = reportsPerLook_ - reports_ % reportsPerLook_ - 1; k < count;
         k += reportsPerLook_) {
        const auto at = static_cast<std::size_t>(k);
        Look(times[at], positions + at * stride, velocities + at * stride);
    }
    reports_ += count;
    const auto last = static_cast<std::size_t>(count - 1);
    timeBeforeLast_ = last > 0 ? times[last - 1] : tail_.time;
    tail_.time = times[last];
    std::copy_n(positions + last * stride, stride, tail_.positions.begin());
    std::copy_n(velocities + last * stride, stride, tail_.velocities.begin());
}

void KeptRun::Look(double time, const double* positions, const double* velocities) {
    Sample kept;
    for (Watched& body : watched_) {
        if (!body.chooser.IsQuiet(time, velocities) &&
            body.chooser.Look({time, VectorAt(positions), VectorAt(velocities), true}, &kept))
            AddSample(body.track, kept);
        positions += 3;
        velocities += 3;
    }
}

// Where memory is lacking the oldest samples go; where even that does not help, this one.
void KeptRun::AddSample(SampleTrack* track, const Sample& sample) {
    if (track->Count() > 0 && sample.isJoined && IsBefore(sample.time, track->Last().time)) return;
    for (bool isFirstTry = true;; isFirstTry = false) {
        try {
            track->Add(sample);
            samples_++;
            return;
        } catch (const std::bad_alloc&) {
            wasShort_ = true;
            if (!isFirstTry) return track->Break();
            ThinSamples();
        }
    }
}

void KeptRun::Keep(RunCheckpoint checkpoint) {
    checkpoint.report = reports_;
    // As the calculator has them: somebody may have edited one, which counts from the next halt on.
    checkpoint.radii = radii_;
    checkpoints_.Add(std::move(checkpoint));
}

void KeptRun::NoteMergers(const std::vector<Merger>& mergers,
                          const std::vector<std::string>& names) {
    for (std::size_t i = 0; i < mergers.size(); i++) {
        RunEvent event;
        event.kind = RunEvent::Kind::kMerger;
        event.time = mergers[i].time;
        event.name = names[i];
        for (const int64 id : {mergers[i].survivor, mergers[i].absorbed})
            if (const auto place = PlaceOf(id)) event.before.push_back(BodyAtEnd(*place));
        events_.push_back(std::move(event));
        newMergers_.push_back(mergers[i]);
    }
}

void KeptRun::NoteEdit(const RunCheckpoint& now) {
    RunEvent event;
    event.time = tail_.time;
    std::vector<bool> isAsBefore(tail_.CountBodies());
    for (std::size_t i = 0; i < now.state.CountBodies(); i++)
        if (const auto former = PlaceOf(now.state.ids[i])) isAsBefore[*former] = IsAsBefore(now, i);
    for (std::size_t i = 0; i < isAsBefore.size(); i++)
        if (!isAsBefore[i] && !IsMerged(tail_.ids[i], true)) event.before.push_back(BodyAtEnd(i));
    events_.push_back(std::move(event));
}

bool KeptRun::IsMerged(int64 id, bool orAbsorbed) const {
    return std::any_of(newMergers_.begin(), newMergers_.end(), [&](const Merger& merger) {
        return merger.survivor == id || (orAbsorbed && merger.absorbed == id);
    });
}

// The bodies are those of the last report but for the mergers since.
bool KeptRun::IsResultOfMergers(const RunCheckpoint& now) const {
    const SystemState& state = now.state;
    if (newMergers_.empty() || state.CountBodies() + newMergers_.size() != tail_.CountBodies())
        return false;
    for (std::size_t i = 0; i < state.CountBodies(); i++)
        if (!IsAsBefore(now, i) && !IsMerged(state.ids[i], false)) return false;
    return true;
}

bool KeptRun::IsAsBefore(const RunCheckpoint& now, std::size_t body) const {
    const auto former = PlaceOf(now.state.ids[body]);
    return former && IsWhereItWas(SampleOf(now.state, body), *former) &&
           now.state.gm[body] == tail_.gm[*former] && now.radii[body] == radii_[*former];
}

bool KeptRun::IsWhereItWas(const Sample& now, std::size_t former) const {
    const Sample was = TailOf(former);
    return now.position == was.position && now.velocity == was.velocity;
}

std::optional<std::size_t> KeptRun::PlaceOf(int64 id) const {
    const auto found = places_.find(id);
    if (found == places_.end()) return std::nullopt;
    return found->second;
}

Sample KeptRun::TailOf(std::size_t body) const {
    Sample sample = SampleOf(tail_, body);
    sample.isJoined = true;
    return sample;
}

RunEvent::Before KeptRun::BodyAtEnd(std::size_t body) const {
    const Sample sample = TailOf(body);
    return {tail_.ids[body], tail_.names[body], tail_.gm[body],
            radii_[body],    sample.position,   sample.velocity};
}

void KeptRun::ThinSamples() {
    const std::size_t before = samples_;
    if (ThinUntil(std::midpoint(startTime_, tail_.time)) * kEnough >= before) return;
    if (ThinUntil(tail_.time) * kEnough >= before) return;
    for (auto& [id, track] : tracks_)
        track.Clear();
    samples_ = 0;
}

std::size_t KeptRun::ThinUntil(double time) {
    std::size_t gone = 0;
    for (auto& [id, track] : tracks_)
        gone += track.Thin(time);
    samples_ -= gone;
    return gone;
}

std::vector<int64> KeptRun::Bodies() const {
    std::vector<int64> ids;
    for (const auto& [id, track] : tracks_)
        ids.push_back(id);
    std::sort(ids.begin(), ids.end());
    return ids;
}

std::vector<Sample> KeptRun::Samples(int64 body, double from, double to, std::size_t most) const {
    const auto track = tracks_.find(body);
    if (track == tracks_.end()) return {};
    std::optional<Sample> tail;
    if (const auto place = PlaceOf(body)) tail = TailOf(*place);
    return track->second.From(from, to, tail, most);
}
