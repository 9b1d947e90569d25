// Makes the series of all bodies from their places and velocities. Owned by a stepper; one
// thread at a time calls it, and helper threads share the work where there are enough bodies. The
// series are the same bits whatever the number of threads and the instruction set.
//
// Up to 16 massive bodies meet each other in a ring, more in tiles. Tiles belong to a fixed number
// of groups with sums of their own, which are added in pairs, these in pairs, and so on. In tiles a
// body is given up at the order where its terms become too small to matter: bodies are sorted, by
// how fast their accelerations change, so that those with many orders share vectors.
#pragma once

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "Calculation/Ranks.h"
#include "Calculation/Series/RankSums.h"
#include "Calculation/Series/SeriesInstances.h"
#include "Calculation/Series/SeriesStore.h"
#include "Calculation/Series/UnsetRows.h"
#include "Calculation/StopFlags.h"
#include "Calculation/WorkerTeam.h"
#include "Platform/Support/SupportDefs.h"

class SeriesForces {
public:
    // 0 threads: as many as the machine has processors, within a bound.
    explicit SeriesForces(int32 threads);
    SeriesForces(const SeriesForces&) = delete;
    SeriesForces& operator=(const SeriesForces&) = delete;

    void SetThreads(int32 threads);
    // Number 0 of these shares Make with the others, which Help, with a store and states as large.
    // Null (not owned): it is alone.
    void SetRanks(Ranks* ranks) { ranks_ = ranks; }
    void Help(SeriesStore* store, SplitStates* states, double theta, double cutoff);
    bool SetInstructionSet(InstructionSet set);
    [[nodiscard]] const SeriesInstance& Instance() const { return *instance_; }

    // The compiled order that is used where `wanted` was asked for: the next higher one, but as
    // much lower as the memory for the pairs of so many massive bodies demands.
    [[nodiscard]] static int32 OrderFor(int32 wanted, int32 massive);
    // Masses and numbers of bodies have changed.
    void Resize(const SeriesStore& store);

    // Terms that matter less than `cutoff` in a step of `theta` scales need not be made; 0: all
    // are. False: given up halfway, because of `stop`.
    [[nodiscard]] bool Make(SeriesStore* store, const SplitStates& states, double theta,
                            double cutoff, const StopFlags& stop);
    // Some bodies were given up at a lower order.
    [[nodiscard]] bool HasLeftOut() const { return hasLeftOut_; }

private:
    struct Pass;
    struct Sums;
    struct TargetTasks;

    void ResizeRing();
    void ResizeTiles();
    void SetPulls();
    [[nodiscard]] bool IsForRanks() const;
    bool MakeAll(SeriesStore* store, const SplitStates& states, double theta, double cutoff,
                 const StopFlags& stop);
    void Tell(const SeriesStore& store, const SplitStates& states, double theta, double cutoff);
    bool MakePassWithRanks(int32 k, const StopFlags& stop);
    bool MakeTargetsWithRanks(const StopFlags& stop);
    bool MakeTiles(SeriesStore* store, const SplitStates& states, double theta, double cutoff,
                   const StopFlags& stop);
    bool MakePass(int32 k, const StopFlags& stop);
    void SortBodies(SeriesStore* store);
    void LeaveOut(int32 k, double theta, double cutoff);
    bool MakeTargets(const StopFlags& stop);
    template <class Work>
    void Run(Work* work, bool isWorthSharing);

    int32 threads_ = 1;
    const SeriesInstance* instance_;
    std::unique_ptr<WorkerTeam> team_;  // made when first needed
    SeriesArrays arrays_;
    RingArrays ring_;
    double pulledScale_ = 0.0;  // of the ring's pulls
    UnsetRows pairs_;           // of the ring or of the tiles
    TileArrays tileArrays_;
    std::vector<SeriesTile> tiles_;
    UnsetRows sums_;
    std::vector<uint8> active_;
    std::vector<std::pair<double, int32>> speeds_;
    std::vector<int32> sorted_;
    UnsetRows scratch_;  // of the massless bodies' pairs, for each thread
    int64 scratchRows_ = 0;
    bool hasLeftOut_ = false;
    Ranks* ranks_ = nullptr;
    bool isWithRanks_ = false;            // this Make
    std::unique_ptr<RankSums> rankSums_;  // of the tiles, when needed
    std::vector<double> gm_;              // as told
};
