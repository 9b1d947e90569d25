// The gravitational accelerations of all bodies with their first two time derivatives, the rate of
// the fastest pair, and the pairs that touch. Owned by a calculator; one thread at a time calls it,
// and helper threads of its own share the work where there are enough bodies. The results are the
// same bits whatever the number of threads and the instruction set: those of the plain walk over
// the pairs (ForceKernel.h).
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Calculation/BodyArrays.h"
#include "Calculation/ForceInstances.h"
#include "Calculation/Ranks.h"
#include "Calculation/StopFlags.h"
#include "Calculation/WorkerTeam.h"
#include "Platform/Support/SupportDefs.h"

class RankRows;

class ForceEvaluator {
public:
    enum class Result { kDone, kCollision, kStopped };

    // 0 threads: as many as the machine has processors, within a bound.
    explicit ForceEvaluator(int32 threads = 0);
    ~ForceEvaluator();
    ForceEvaluator(const ForceEvaluator&) = delete;
    ForceEvaluator& operator=(const ForceEvaluator&) = delete;

    void SetThreads(int32 threads);
    int32 Threads() const { return threads_; }
    // Number 0 of these shares Evaluate with the others, which Help. Null (not owned): it is alone.
    void SetRanks(Ranks* ranks) { ranks_ = ranks; }
    void Help(const RankTask& task);
    // For tests and benchmarks; by default the best one of the processor. False when it has none
    // such: then nothing changes.
    bool SetInstructionSet(InstructionSet set);

    // Makes room for N bodies in mass order, the first M of which are massive. What the arrays held
    // is lost.
    void Resize(int32 bodies, int32 massive);
    int32 CountBodies() const { return arrays_.bodies; }
    int32 CountMassive() const { return arrays_.massive; }

    // To be filled by the caller, N numbers each: metres, metres per second, GM in m3/s2, metres.
    double* Position(int axis) { return Array(kPosition + axis); }
    double* Velocity(int axis) { return Array(kVelocity + axis); }
    double* GM() { return Array(kGM); }
    double* Radius() { return Array(kRadius); }
    const double* Position(int axis) const { return Array(kPosition + axis); }
    const double* Velocity(int axis) const { return Array(kVelocity + axis); }
    const double* GM() const { return Array(kGM); }
    const double* Radius() const { return Array(kRadius); }

    // Accelerations, with order >= 3 jerks and with order >= 4 snaps, and the rate. Only kDone
    // promises them. kCollision: some pairs touch, see Collisions(). kStopped: given up halfway,
    // because of `stop`.
    [[nodiscard]] Result Evaluate(int32 order, const StopFlags& stop);

    // Only looks for pairs that touch. kCollision, whether there are any or not, or kStopped.
    [[nodiscard]] Result ListCollisions(const StopFlags& stop);

    // N numbers each: m/s2, m/s3, m/s4.
    const double* Acceleration(int axis) const { return Array(kAcceleration + axis); }
    const double* Jerk(int axis) const { return Array(kJerk + axis); }
    const double* Snap(int axis) const { return Array(kSnap + axis); }
    // The greatest of |w|2/r2 and (m + m')/r3 of any pair, in 1/s2; 1e-100 without pairs.
    double Rate() const { return rate_; }
    // Some pair acts on its bodies, however little.
    bool Interacts() const;
    // In the order of the pair walk: earlier body descending, then later body descending.
    const std::vector<CollidingPair>& Collisions() const { return collisions_; }

private:
    // The arrays in storage_, those with an axis three each.
    enum {
        kPosition = 0,
        kVelocity = 3,
        kGM = 6,
        kRadius,
        kAcceleration,
        kJerk = 11,
        kSnap = 14,
        kCountArrays = 17
    };
    struct Pass;

    // A vector of targets, and so a task, has its cache lines to itself.
    struct alignas(64) Line {
        double numbers[8];
    };
    static_assert(sizeof(Line) == kMaxLanes * sizeof(double));

    void MakeRoomForPairs();
    double* Array(int index) { return storage_[index * stride_].numbers; }
    const double* Array(int index) const { return storage_[index * stride_].numbers; }
    [[nodiscard]] bool IsQuick() const;
    [[nodiscard]] int32 TargetsPerTask() const;
    [[nodiscard]] bool IsForRanks() const;
    Result EvaluateWithRanks(int32 order, const StopFlags& stop);
    Result EvaluateQuickly(int32 order, const StopFlags& stop);
    Result EvaluateMassiveFirst(const StopFlags& stop);
    // Where the massless ones begin, as whole vectors go.
    [[nodiscard]] int32 EndOfMassive() const;
    void Run(Pass* pass);

    int32 threads_ = 1;
    const ForceInstance* instance_;
    std::vector<Line> storage_;
    size_t stride_ = 0;  // lines of an array
    std::vector<double> kept_;
    std::vector<std::vector<double>> rooms_;  // for the pairs of a task, one for each thread
    ForceArrays arrays_;
    double rate_ = 0;
    std::vector<CollidingPair> collisions_;
    std::unique_ptr<WorkerTeam> team_;  // made when first needed
    Ranks* ranks_ = nullptr;
    std::unique_ptr<RankRows> rankRows_;  // likewise
};
