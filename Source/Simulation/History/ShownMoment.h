// The moment of a simulation that its displays and fields show: now, or one of the kept runs on the
// branch in focus. One per simulation, owned by what owns the document. Whoever shows it observes
// the document, is told kMomentChanged, and asks; whatever changes the model leads back to now.
//
// Any thread; none may hold a lock of the document, except to ask.
#pragma once

#include <mutex>
#include <optional>

#include "Model/Sharing/Observer.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/MomentFinder.h"

class ShownMoment final : private Observer {
public:
    // Neither is owned. To be made before all who show it: it is told of changes first.
    ShownMoment(EpochPortal* portal, const RunHistory* history);
    ~ShownMoment() override;
    ShownMoment(const ShownMoment&) = delete;
    ShownMoment& operator=(const ShownMoment&) = delete;

    [[nodiscard]] Moment Get() const;
    [[nodiscard]] bool IsPast() const { return Get().IsPast(); }

    // The moment at that time, from the samples at once, and to the bit when it rests there: of the
    // first report at or past it. Where no run is kept, the nearest one that is; at the line's end:
    // now. What is half typed becomes an edit first.
    void SeekTo(double time);
    // To the report before the moment, or after it.
    void StepReport(bool isForward);
    void BackToNow();

    // Of a moment of the past that is not exact yet; the caller waits until it is. Null: it cannot
    // be computed.
    [[nodiscard]] std::optional<Moment> GetExact() const;
    // Of a moment that takes long to compute: the part that is done.
    [[nodiscard]] std::optional<double> Progress() const { return finder_.Progress(); }

private:
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

    void Show(Moment moment);
    void NoteFound(const MomentFinder::Wish& wish, const std::optional<Moment>& moment);

    EpochPortal* const portal_;
    const RunHistory* const history_;
    mutable std::mutex mutex_;  // guards what follows; no other lock is taken meanwhile
    Moment moment_;
    int64 changes_ = 0;    // of the moment
    MomentFinder finder_;  // last: it calls the above
};
