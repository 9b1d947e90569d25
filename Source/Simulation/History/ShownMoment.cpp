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
        const double inside = std::clamp(time, run.start, run.end);
        if (std::abs(inside - time) <= std::abs(nearest - time)) nearest = inside;
    }
    return nearest;
}

}  // namespace

ShownMoment::ShownMoment(EpochPortal* portal, const RunHistory* history)
    : portal_(portal),
      history_(history),
      finder_(
          portal, history,
          [this](const MomentFinder::Wish& wish, const std::optional<Moment>& moment) {
              NoteFound(wish, moment);
          },
          [this] { portal_->TellObservers(kMomentChanged); }) {
    portal_->AddObserver(this);
}

ShownMoment::~ShownMoment() {
    portal_->RemoveObserver(this);
}

Moment ShownMoment::Get() const {
    const std::lock_guard lock(mutex_);
    return moment_;
}

void ShownMoment::SeekTo(double time) {
    portal_->CommitChanges();
    Moment near;
    {
        const ReadGuard guard(portal_);
        const TimeLine line = ReadRuns(*portal_, *history_);
        if (!line.IsEmpty() && time < std::max(line.End(), line.now)) {
            const double inside = Confined(time, line);
            if (const TimeLine::Run* const run = line.RunAt(inside); run != nullptr)
                near = NearMoment(*run->epoch, inside, *history_);
        }
    }
    Show(std::move(near));
}

void ShownMoment::Show(Moment moment) {
    MomentFinder::Wish wish{moment.run, moment.IsPast() ? moment.epoch->Time() : 0.0};
    bool isChanged = false;
    {
        const std::lock_guard lock(mutex_);
        isChanged = moment.IsPast() || moment_.IsPast();
        moment_ = std::move(moment);
        wish.number = ++changes_;
    }
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
        // At the first report of a run the one before is in the run before.
        if (const TimeLine::Run* const run = line.RunAt(wish.time);
            !isForward && run != nullptr && run->start == wish.time && run != line.runs.data())
            wish.run = (run - 1)->epoch;
        wish.number = ++changes_;
    }
    finder_.Want(wish);
}

void ShownMoment::BackToNow() {
    portal_->CommitChanges();
    Show({});
}

std::optional<Moment> ShownMoment::GetExact() const {
    Moment moment = Get();
    if (!moment.IsPast() || moment.isExact) return moment;
    return finder_.Find({moment.run, moment.epoch->Time()});
}

// Beyond the last report is now, and so is what cannot be found.
void ShownMoment::NoteFound(const MomentFinder::Wish& wish, const std::optional<Moment>& moment) {
    if (!moment && wish.step < 0) return;
    {
        const std::lock_guard lock(mutex_);
        if (wish.number != changes_) return;
        moment_ = moment.value_or(Moment{});
    }
    portal_->TellObservers(kMomentChanged);
}

// The model's lock may be held. Who shows the moment is told of the same change afterwards.
void ShownMoment::Changed(int32 what) {
    if ((what & kModelChanged) == 0 || what == kCalculatorParked) return;
    {
        const std::lock_guard lock(mutex_);
        changes_++;
        if (!moment_.IsPast()) return;
        moment_ = {};
    }
    finder_.WantNothing();
    portal_->TellObservers(kMomentChanged);
}
