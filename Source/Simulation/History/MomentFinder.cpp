#include "Simulation/History/MomentFinder.h"

#include <chrono>
#include <new>
#include <utility>

#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"

namespace {

constexpr std::chrono::milliseconds kRest(120);
constexpr double kNoProgress = -1.0;
// The report before: how often the way back is doubled in its search.
constexpr int kMaxDoublings = 60;

}  // namespace

MomentFinder::MomentFinder(EpochPortal* portal, const RunHistory* history, Found found, Waits waits)
    : portal_(portal),
      history_(history),
      found_(std::move(found)),
      waits_(std::move(waits)),
      thread_([this] { Work(); }) {}

MomentFinder::~MomentFinder() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        wishes_++;
    }
    changed_.notify_all();
    thread_.join();
}

void MomentFinder::Want(const Wish& wish) {
    {
        const std::lock_guard lock(mutex_);
        wish_ = wish;
        wishes_++;
        busy_.reset();
        isHurried_ = false;
    }
    changed_.notify_all();
}

void MomentFinder::Hurry(const Wish& wish) {
    {
        const std::lock_guard lock(mutex_);
        if (busy_ == wish.number) return;
        isHurried_ = true;
        if (!wish_ || wish_->number != wish.number) {
            wish_ = wish;
            wishes_++;
            busy_.reset();
        }
    }
    changed_.notify_all();
}

void MomentFinder::WantNothing() {
    const std::lock_guard lock(mutex_);
    wish_.reset();
    wishes_++;
    busy_.reset();
}

std::optional<double> MomentFinder::Progress() const {
    const double progress = progress_;
    return progress >= 0.0 ? std::optional(progress) : std::nullopt;
}

bool MomentFinder::IsWanted(int64 count) const {
    const std::lock_guard lock(mutex_);
    return wishes_ == count;
}

void MomentFinder::Work() {
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        changed_.wait(lock, [this] { return isEnding_ || wish_; });
        const int64 count = wishes_;
        const bool isStep = wish_ && wish_->step != 0;
        if (!isStep) changed_.wait_for(lock, kRest, [&] { return wishes_ != count || isHurried_; });
        if (wishes_ != count || !wish_) continue;
        const Wish wish = *std::exchange(wish_, std::nullopt);
        busy_ = wish.number;
        isHurried_ = false;
        lock.unlock();
        std::optional<Moment> moment;
        try {
            moment = Find(wish, [&](double part) {
                progress_ = part;
                waits_();
                return IsWanted(count);
            });
        } catch (const std::bad_alloc&) {
            // As if it could not be found.
        }
        progress_ = kNoProgress;
        if (IsWanted(count))
            found_(wish, moment);
        else
            waits_();  // nobody waits any more
        lock.lock();
        if (wishes_ == count) busy_.reset();
    }
}

std::optional<Moment> MomentFinder::Find(const Wish& wish,
                                         const RunHistory::Progress& progress) const {
    const auto report = FindReport(wish, progress);
    if (!report) return std::nullopt;
    const ReadGuard guard(portal_);
    if (!portal_->HasEpoch(wish.run)) return std::nullopt;
    Moment moment = ExactMoment(*wish.run, *report);
    return moment.IsPast() ? std::optional(std::move(moment)) : std::nullopt;
}

std::optional<RunCheckpoint> MomentFinder::FindReport(const Wish& wish,
                                                      const RunHistory::Progress& progress) const {
    return wish.step < 0 ? FindReportBefore(wish, progress) : MomentAt(wish, progress);
}

std::optional<RunCheckpoint> MomentFinder::MomentAt(const Wish& wish,
                                                    const RunHistory::Progress& progress) const {
    const auto which = wish.step > 0 ? RunHistory::Which::kNext : RunHistory::Which::kAtOrPast;
    RunCheckpoint moment;
    const bool isFound = history_->MomentAt(wish.run, wish.time, progress, &moment, which) ==
                         RunHistory::Finding::kFound;
    return isFound ? std::optional(std::move(moment)) : std::nullopt;
}

// Goes back far enough to lie before it, and from there report by report.
std::optional<RunCheckpoint> MomentFinder::FindReportBefore(
    const Wish& wish, const RunHistory::Progress& progress) const {
    const auto span = history_->SpanOf(wish.run);
    if (!span || wish.time == span->start) return std::nullopt;
    const bool isBackwards = span->end < span->start;
    const auto isBefore = [&](double time) {
        return isBackwards ? time > wish.time : time < wish.time;
    };
    if (!isBefore(span->start)) return std::nullopt;
    const auto next = MomentAt({wish.run, wish.time, 1}, progress);
    double way = next ? next->state.time - wish.time : (span->end - span->start) * 1e-6;
    std::optional<RunCheckpoint> before;
    for (int i = 0; i < kMaxDoublings && !before; i++, way *= 2.0) {
        const double from = wish.time - way;
        // The start counts as a report; elsewhere there may be none at that time.
        const bool isStart = isBackwards ? from >= span->start : from <= span->start;
        before = MomentAt({wish.run, isStart ? span->start : from, isStart ? 0 : 1}, progress);
        if (!before) return std::nullopt;
        if (!isBefore(before->state.time)) before.reset();
    }
    while (before) {
        auto after = MomentAt({wish.run, before->state.time, 1}, progress);
        if (!after || !isBefore(after->state.time)) break;
        before = std::move(after);
    }
    return before;
}
