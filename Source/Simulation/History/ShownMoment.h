// The moment of a simulation that its displays and fields show: now, or one of the kept runs on the
// branch in focus. One per simulation, owned by what owns the document. Whoever shows it observes
// the document, is told kMomentChanged, and asks; whatever changes the model leads back to now.
//
// Any thread; none may hold a lock of the document, except to ask.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "Model/Sharing/Observer.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/MomentFinder.h"
#include "Simulation/History/RunRemaker.h"

class ShownMoment final : private Observer {
public:
    // Neither portal nor history is owned. To be made before all who show it: it is told of changes
    // first. `joiner` stands between the names of bodies that merge.
    ShownMoment(EpochPortal* portal, RunHistory* history, std::string joiner);
    ~ShownMoment() override;
    ShownMoment(const ShownMoment&) = delete;
    ShownMoment& operator=(const ShownMoment&) = delete;

    [[nodiscard]] Moment Get() const;
    [[nodiscard]] bool IsPast() const { return Get().IsPast(); }

    // The moment at that time, from the samples at once, and to the bit when it rests there: of the
    // first report at or past it. Where no run is kept, the nearest one that is; at the line's end:
    // now. What is half typed becomes an edit first. A run that lies there and is not kept is made
    // again first.
    void SeekTo(double time);
    // The same, but what is half typed stays as it is.
    void GoTo(double time);
    // To the report before the moment, or after it.
    void StepReport(bool isForward);
    void BackToNow();
    // In the past: the system that is edited from now on is one that the document does not have
    // now, until another one is edited; or, with kNoSystemID, the document's again.
    void SetFocus(int64 system);

    // Once the moment is exact, or is now; the caller waits for so long, and is called now and then
    // meanwhile. Null: it is not yet, cannot be computed, or that was stopped, or it was left.
    using Waits = std::function<void()>;
    [[nodiscard]] std::optional<Moment> GetExact(
        const Waits& waits = {}, std::chrono::milliseconds patience = std::chrono::hours(24));
    // Another one for each moment that somebody goes to; the same when it becomes exact.
    [[nodiscard]] int64 Number() const;
    // Of a moment that takes long to compute: the part that is done.
    [[nodiscard]] std::optional<double> Progress() const { return finder_.Progress(); }
    // Takes whether a moment could not be computed, and now is shown instead.
    [[nodiscard]] bool TakeWhetherLost();

    // The run of the moment, or the newest one on the line, is made again in the background;
    // whatever is shown meanwhile stays.
    void MakeRunAgain();
    // Also whoever waits for a moment waits no longer.
    void StopMaking();
    [[nodiscard]] std::optional<double> MakingProgress() const { return remaker_.Progress(); }
    // Takes why a run could not be made again, if that was not told yet.
    [[nodiscard]] std::optional<RunHistory::Finding> TakeRefusal();

private:
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

    void Take(Moment moment);
    // Not if the moment has changed since it had that number of changes.
    void Show(Moment moment, int64 changes);
    void NoteFound(const MomentFinder::Wish& wish, const std::optional<Moment>& moment);
    void NoteMade(const AbEpoch* run, RunHistory::Finding finding);

    EpochPortal* const portal_;
    RunHistory* const history_;
    mutable std::mutex mutex_;  // guards what follows; no other lock is taken meanwhile
    Moment moment_;
    int64 focus_ = kNoSystemID;  // of moments of the past
    int64 changes_ = 0;          // of the moment
    // To be shown when its run is made, which is only compared.
    struct Awaited {
        const AbEpoch* run = nullptr;
        double time = 0.0;  // s
    };
    std::optional<Awaited> awaited_;
    std::optional<RunHistory::Finding> refusal_;
    bool isLost_ = false;
    int64 stops_ = 0;
    std::condition_variable settled_;
    MomentFinder finder_;  // last, as the next one, which uses it: they call the above
    RunRemaker remaker_;
};
