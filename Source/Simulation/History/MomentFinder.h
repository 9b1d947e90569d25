// Computes moments of kept runs to the bit, on a thread of its own, as soon as nobody has asked for
// another one for a while. Any thread may ask; none may hold a lock of the document.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "Platform/Support/SupportDefs.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/RunHistory.h"

class EpochPortal;

class MomentFinder {
public:
    struct Wish {
        const AbEpoch* run;
        double time;  // s
        // 0: the first report at or past that time; 1: the one after that, -1: the one before.
        int32 step = 0;
        int64 number = 0;  // the caller's
    };
    // On the finder's thread. Nothing: it could not be found.
    using Found = std::function<void(const Wish&, const std::optional<Moment>&)>;
    // Likewise, now and then while it takes long.
    using Waits = std::function<void()>;

    // None is owned.
    MomentFinder(EpochPortal* portal, const RunHistory* history, Found found, Waits waits);
    ~MomentFinder();
    MomentFinder(const MomentFinder&) = delete;
    MomentFinder& operator=(const MomentFinder&) = delete;

    // Instead of what was wanted before; after a while, unless it is a step.
    void Want(const Wish& wish);
    void WantNothing();
    // Somebody waits for it: at once, unless it is what is being computed.
    void Hurry(const Wish& wish);
    // Of what takes long: the part that is done.
    [[nodiscard]] std::optional<double> Progress() const;

private:
    void Work();
    [[nodiscard]] std::optional<Moment> Find(const Wish& wish,
                                             const RunHistory::Progress& progress) const;
    [[nodiscard]] std::optional<RunCheckpoint> FindReport(
        const Wish& wish, const RunHistory::Progress& progress) const;
    [[nodiscard]] std::optional<RunCheckpoint> MomentAt(const Wish& wish,
                                                        const RunHistory::Progress& progress) const;
    [[nodiscard]] std::optional<RunCheckpoint> FindReportBefore(
        const Wish& wish, const RunHistory::Progress& progress) const;
    [[nodiscard]] bool IsWanted(int64 count) const;

    EpochPortal* const portal_;
    const RunHistory* const history_;
    const Found found_;
    const Waits waits_;
    std::atomic<double> progress_{-1.0};
    mutable std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    std::optional<Wish> wish_;
    std::optional<int64> busy_;  // the number of the wish that is carried out
    bool isHurried_ = false;
    int64 wishes_ = 0;
    bool isEnding_ = false;
    std::thread thread_;  // last: it uses the above
};
