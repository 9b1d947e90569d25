#include "Simulation/History/ShownMoment.h"

#include <algorithm>
#include <utility>

#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/TimeLine.h"

namespace {

constexpr int32 kModelChanged = kBodyDataChanged | kTimeChanged | kSystemRemoved | kSystemAdded |
                                kFocusEpochChanged | kEpochRemoved;

// Of no run, the nearest one.
double Confined(double time, const TimeLine& line) {
    double nearest = line.Start();
    for (const TimeLine::Run& run : line.runs) {
        const auto [from, to] = std::minmax(run.start, run.end);
        const double inside = std::clamp(time, from, to);
        if (std::abs(inside - time) <= std::abs(nearest - time)) nearest = inside;
    }
    return nearest;
}

}  // namespace

ShownMoment::ShownMoment(EpochPortal* portal, RunHistory* history, std::string joiner)
    : portal_(portal),
      history_(history),
      finder_(
          portal, history,
          [this](const MomentFinder::Wish& wish, const std::optional<Moment>& moment) {
              NoteFound(wish, moment);
          },
          [this] { portal_->TellObservers(kMomentChanged); }),
      remaker_(
          portal, history, std::move(joiner),
          [this](const AbEpoch* run, RunHistory::Finding finding) { NoteMade(run, finding); },
          [this] { portal_->TellObservers(kMomentChanged); }) {
    portal_->AddObserver(this);
}

ShownMoment::~ShownMoment() {
    portal_->RemoveObserver(this);
}

Moment ShownMoment::Get() const {
    const std::lock_guard lock(mutex_);
    Moment moment = moment_;
    moment.focus = focus_;
    return moment;
}

// With the lock.
void ShownMoment::Take(Moment moment) {
    moment_ = std::move(moment);
    if (!moment_.IsPast()) focus_ = kNoSystemID;
}

void ShownMoment::SetFocus(int64 system) {
    {
        const std::lock_guard lock(mutex_);
        if (!moment_.IsPast() || std::exchange(focus_, system) == system) return;
    }
    portal_->TellObservers(kMomentChanged);
}

void ShownMoment::SeekTo(double time) {
    portal_->CommitChanges();
    GoTo(time);
}

void ShownMoment::GoTo(double time) {
    Moment near;
    const AbEpoch* unmade = nullptr;
    int64 changes = 0;
    {
        const ReadGuard guard(portal_);
        const TimeLine line = ReadRuns(*portal_, *history_);
        if (line.IsPast(time)) {
            const double inside = Confined(time, line);
            const TimeLine::Run* const run = line.RunAt(inside);
            if (run != nullptr && run->isKept) near = NearMoment(*run->epoch, inside, *history_);
            if (run != nullptr && !run->isKept) unmade = run->epoch;
        }
        const std::lock_guard lock(mutex_);
        awaited_ = unmade == nullptr ? std::nullopt : std::optional(Awaited{unmade, time});
        changes = changes_;
    }
    if (unmade != nullptr) return remaker_.Want(unmade);
    Show(std::move(near), changes);
}

void ShownMoment::Show(Moment moment, int64 changes) {
    MomentFinder::Wish wish{moment.run, moment.IsPast() ? moment.epoch->Time() : 0.0};
    bool isChanged = false;
    {
        const std::lock_guard lock(mutex_);
        if (changes != changes_) return;
        isChanged = moment.IsPast() || moment_.IsPast();
        Take(std::move(moment));
        wish.number = ++changes_;
    }
    settled_.notify_all();
    if (wish.run != nullptr)
        finder_.Want(wish);
    else
        finder_.WantNothing();
    if (isChanged) portal_->TellObservers(kMomentChanged);
}

void ShownMoment::StepReport(bool isForward) {
    portal_->CommitChanges();
    MomentFinder::Wish wish{nullptr, 0.0, isForward ? 1 : -1};
    {
        const ReadGuard guard(portal_);
        const TimeLine line = ReadRuns(*portal_, *history_);
        const std::lock_guard lock(mutex_);
        if (line.IsEmpty() || (isForward && !moment_.IsPast())) return;
        wish.time = moment_.IsPast() ? moment_.epoch->Time() : line.End();
        wish.run = moment_.IsPast() ? moment_.run : line.runs.back().epoch;
        // Where two runs meet the report before is in the one, and that after in the other.
        if (const TimeLine::Run* const run = line.RunAt(wish.time); run != nullptr) {
            const bool isFirst = run == line.runs.data();
            wish.run =
                isForward || isFirst || run->start != wish.time ? run->epoch : (run - 1)->epoch;
        }
        wish.number = ++changes_;
    }
    finder_.Want(wish);
}

void ShownMoment::MakeRunAgain() {
    portal_->CommitChanges();
    const AbEpoch* run = nullptr;
    {
        const ReadGuard guard(portal_);
        const TimeLine line = ReadRuns(*portal_, *history_);
        const std::lock_guard lock(mutex_);
        run = moment_.IsPast() || line.IsEmpty() ? moment_.run : line.runs.back().epoch;
        awaited_.reset();
    }
    if (run == nullptr) return NoteMade(nullptr, RunHistory::Finding::kNotKept);
    remaker_.Want(run);
}

void ShownMoment::StopMaking() {
    remaker_.WantNothing();
    {
        const std::lock_guard lock(mutex_);
        stops_++;
    }
    finder_.WantNothing();
    settled_.notify_all();
    portal_->TellObservers(kMomentChanged);
}

std::optional<RunHistory::Finding> ShownMoment::TakeRefusal() {
    const std::lock_guard lock(mutex_);
    return std::exchange(refusal_, std::nullopt);
}

// On the remaker's thread. Another run may be awaited by now.
void ShownMoment::NoteMade(const AbEpoch* run, RunHistory::Finding finding) {
    std::optional<double> awaited;
    {
        const std::lock_guard lock(mutex_);
        if (awaited_ && awaited_->run == run) {
            awaited = awaited_->time;
            awaited_.reset();
        }
        if (finding == RunHistory::Finding::kNotKept || finding == RunHistory::Finding::kLost)
            refusal_ = finding;
    }
    if (finding == RunHistory::Finding::kFound && awaited) GoTo(*awaited);
    portal_->TellObservers(kMomentChanged);
}

void ShownMoment::BackToNow() {
    portal_->CommitChanges();
    int64 changes = 0;
    {
        const std::lock_guard lock(mutex_);
        awaited_.reset();
        changes = changes_;
    }
    Show({}, changes);
}

std::optional<Moment> ShownMoment::GetExact(const Waits& waits,
                                            std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds kTelling(100);
    const auto end = std::chrono::steady_clock::now() + patience;
    std::unique_lock lock(mutex_);
    if (!moment_.IsPast()) return moment_;
    const int64 changes = changes_;
    const int64 stops = stops_;
    const MomentFinder::Wish wish{moment_.run, moment_.epoch->Time(), 0, changes};
    const auto isSettled = [&] {
        return changes_ != changes || stops_ != stops || !moment_.IsPast() || moment_.isExact;
    };
    while (!isSettled() && std::chrono::steady_clock::now() < end) {
        lock.unlock();
        finder_.Hurry(wish);
        if (waits) waits();
        lock.lock();
        settled_.wait_for(lock, std::min(patience, kTelling), isSettled);
    }
    // The report may be the last one, which is now.
    const bool isIt = !moment_.IsPast() ? !isLost_ : moment_.isExact;
    return changes_ == changes && isIt ? std::optional(moment_) : std::nullopt;
}

int64 ShownMoment::Number() const {
    const std::lock_guard lock(mutex_);
    return changes_;
}

bool ShownMoment::TakeWhetherLost() {
    const std::lock_guard lock(mutex_);
    return std::exchange(isLost_, false);
}

// Beyond the last report is now, and so is what cannot be found.
void ShownMoment::NoteFound(const MomentFinder::Wish& wish, const std::optional<Moment>& moment) {
    if (!moment && wish.step < 0) return;
    bool isPast = moment.has_value();
    if (isPast) {
        const ReadGuard guard(portal_);
        isPast = ReadRuns(*portal_, *history_).IsPast(moment->epoch->Time());
    }
    {
        const std::lock_guard lock(mutex_);
        if (wish.number != changes_) return;
        isLost_ = !moment && wish.step == 0;
        Take(isPast ? *moment : Moment{});
    }
    settled_.notify_all();
    portal_->TellObservers(kMomentChanged);
}

// The model's lock may be held. Those that show the moment are told of the same change afterwards.
void ShownMoment::Changed(int32 what) {
    if ((what & kModelChanged) == 0 || what == kCalculatorParked) return;
    {
        const std::lock_guard lock(mutex_);
        changes_++;
        awaited_.reset();
        if (!moment_.IsPast()) return;
        Take({});
    }
    settled_.notify_all();
    finder_.WantNothing();
    portal_->TellObservers(kMomentChanged);
}
