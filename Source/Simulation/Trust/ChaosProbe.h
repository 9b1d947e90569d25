// Looks whether the motion that has led to an epoch is chaotic: a shadow of it, displaced by one
// part in 10^12, is computed beside it, and brought back as near whenever it is too far off, while
// its growth is counted. Both with order 16, and through contacts, so that only the motion itself
// parts them. Used by one thread, which waits while others calculate.
//
// Where motion is regular, what is small grows with time: from half of the time to all of it by
// a factor of 2. Growth is taken for chaos when it is kLeastGrowth there.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Simulation/History/RunHistory.h"
#include "Simulation/History/SideRun.h"

class ChaosProbe {
public:
    static constexpr double kDisplacement = 1e-12;
    static constexpr double kLeastGrowth = 20.0;

    // RunRemake::IsPossible is true of the epoch; the caller holds the document's read lock.
    explicit ChaosProbe(const AbEpoch& epoch);
    ChaosProbe(const ChaosProbe&) = delete;
    ChaosProbe& operator=(const ChaosProbe&) = delete;

    // Once. kLost: the motion cannot be computed so far.
    [[nodiscard]] RunHistory::Finding Make(const RunHistory::Progress& progress);
    // s, in which a small difference grows by a factor of e; none: no chaos is seen.
    [[nodiscard]] std::optional<double> FoldingTime() const;
    // s, that it was looked for.
    [[nodiscard]] double Span() const { return span_; }

private:
    [[nodiscard]] bool RunTo(SideRun* run, bool isHeld, double time,
                             const std::function<bool()>& goesOn);
    void Displace();
    // As a part of the system's size.
    [[nodiscard]] double Distance();
    void BringNearer(double distance);

    const double start_;  // s
    const double end_;    // s
    const double span_;   // s
    SideRun motion_;
    SideRun shadow_;
    double scale_ = 0.0;  // m and m/s: of all bodies' places and velocities together
    double speed_ = 0.0;
    double gained_ = 0.0;         // the logarithm of what was taken back
    std::vector<double> growth_;  // its logarithm, at equal intervals
};
