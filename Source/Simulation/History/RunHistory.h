// Keeps the runs of one document: what was between the epochs. One more taker of the calculator's
// reports, which needs no thread of its own; owned by what owns the document, made before the first
// run, gone after the last. What it keeps of a run follows from the run alone, not from batches and
// displays, up to the budget. Questions: any thread; whoever asks for a state holds no lock of
// the document.
//
// A run belongs to its epoch as long as that lives: an undone Go takes it along, and brings it back
// when it is redone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Calculation/ReportConsumer.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Simulation/History/KeptRun.h"
#include "Simulation/History/Sample.h"

class AbEpoch;
class EpochPortal;
class KeptRun;
class Calculator;
struct MergeResult;
struct RunCheckpoint;

// Of all runs together: bytes of samples and checkpoints, and half as much of checkpoints. Of a
// run: checkpoints, beside those that nothing can stand for.
struct HistoryLimits {
    std::size_t bytes = 512'000'000;
    std::size_t checkpoints = 256;
};

// What observers of the document are told when other moments are kept than before: the line of the
// runs is another one, and so are the trails.
inline constexpr int32 kRunsKeptChanged = kMomentChanged | kEpochRenamed;

class RunHistory final : public ReportConsumer {
public:
    // Neither is owned. The owner enters it into the calculator's list of consumers.
    RunHistory(EpochPortal* portal, Calculator* calculator, HistoryLimits limits = {});
    ~RunHistory() override;

    // So many bytes for all runs, from now on. Any thread that holds no lock of the document.
    void SetBudget(std::size_t bytes);
    [[nodiscard]] HistoryLimits Limits() const;
    // Takes over what was kept of this epoch's run, instead of what was; not while the calculator
    // is in it. False: it is, or the epoch that had this life is gone.
    bool Adopt(const AbEpoch* epoch, const std::weak_ptr<const void>& life,
               std::unique_ptr<KeptRun> run);
    // Null: nothing is kept of this epoch.
    [[nodiscard]] std::unique_ptr<KeptRun> CopyOf(const AbEpoch* epoch) const;
    // Gives away what is kept of an epoch's run. While the calculator is parked.
    [[nodiscard]] std::unique_ptr<KeptRun> Take(const AbEpoch* epoch);

    // The bodies of a run have merged. While the calculator is at rest, before it goes on.
    void NoteMergers(const MergeResult& result);

    struct Span {
        double start = 0.0;  // s
        double end = 0.0;    // s, of the last report until now; before the start where time falls
    };
    // None: of this epoch no run is kept.
    [[nodiscard]] std::optional<Span> SpanOf(const AbEpoch* epoch) const;
    // The branch begins in that run, at that time.
    void NoteBranch(const AbEpoch* branch, const AbEpoch* run, double time);
    // What is kept of the way to an epoch.
    struct Way {
        const AbEpoch* run;
        double start = 0.0;  // s
        double end = 0.0;    // s
    };
    // Its own run; of a branch the run that it begins in, up to there. The caller holds the
    // document's read lock.
    [[nodiscard]] std::optional<Way> WayTo(const AbEpoch& epoch) const;
    [[nodiscard]] std::vector<int64> BodiesOf(const AbEpoch* epoch) const;
    // The samples that tell where a body was between two times, the ones around them among these;
    // of more than `most` the newest.
    [[nodiscard]] std::vector<Sample> Samples(const AbEpoch* epoch, int64 body, double from,
                                              double to, std::size_t most = SIZE_MAX) const;
    [[nodiscard]] std::vector<RunEvent> Events(const AbEpoch* epoch) const;
    // The states that are kept as they were, to the bit, in the order of the run: at the
    // checkpoints, and the last report, of which there is nothing but the state.
    [[nodiscard]] std::vector<std::shared_ptr<const RunCheckpoint>> ExactStates(
        const AbEpoch* epoch) const;

    enum class Finding {
        kFound,
        kNotKept,    // there is no such run, or no such moment in it
        kCancelled,  // the caller wanted no more of it
        kLost,       // the calculation did not get there
    };
    // Is told now and then which part of the way is done; false: that is enough.
    using Progress = std::function<bool(double)>;
    enum class Which {
        kAtOrPast,  // the first report at or past a time; where the motion is known, that time
        kNext,      // the first report past it
    };
    // A moment to the bit, with all that a run can be begun from there: calculated again from the
    // nearest checkpoint before it, by a second calculator. The calculator's part is what an epoch
    // keeps of it. On the caller's thread, which waits.
    [[nodiscard]] Finding MomentAt(const AbEpoch* epoch, double time, const Progress& progress,
                                   RunCheckpoint* moment, Which which = Which::kAtOrPast) const;

    [[nodiscard]] std::size_t Bytes() const;
    [[nodiscard]] std::size_t CountCheckpoints(const AbEpoch* epoch) const;
    // Something was not kept for want of memory.
    [[nodiscard]] bool WasShortOfMemory() const;

    void PrepareForGo(int32 reportsPerDraw) override;
    void ReadData(int32 count, double* times, double* positions, double* velocities) override;
    void ReadOk() override;

private:
    struct Entry {
        std::weak_ptr<const void> life;  // of the epoch
        std::unique_ptr<KeptRun> run;
    };
    using Runs = std::unordered_map<const AbEpoch*, Entry>;
    // Where a branch begins.
    struct Origin {
        std::weak_ptr<const void> life;  // of the branch
        const AbEpoch* run;              // only compared
        double time;                     // s
    };

    void BeginOrGoOn();
    void KeepCheckpoint();
    void ForgetCurrent();
    void ForgetDead();
    void TellShortage();
    void MakeRoom();
    [[nodiscard]] std::size_t SampleBytes() const;
    [[nodiscard]] std::size_t CheckpointBytes() const;
    [[nodiscard]] KeptRun* RunWithMost(std::size_t (KeptRun::*bytes)() const) const;
    [[nodiscard]] const KeptRun* Find(const AbEpoch* epoch) const;

    EpochPortal* const portal_;
    Calculator* const calculator_;
    mutable std::mutex mutex_;  // guards what follows; taken after the model lock or without it
    HistoryLimits limits_;
    Runs runs_;
    std::unordered_map<const AbEpoch*, Origin> origins_;
    // Of the epoch that the calculator is in; null where that is not kept. Changed by the
    // calculation thread.
    const AbEpoch* currentEpoch_ = nullptr;
    KeptRun* current_ = nullptr;
    int64 runsBegun_ = 0;  // by the calculator, at the last look
    bool wasShort_ = false;
    bool isShortTold_ = false;  // calculation thread
};
