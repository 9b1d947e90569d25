// The compiled instances of the kernels that make the Taylor series of all bodies, one for each
// instruction set, and the arrays they work on. Plain data and functions without state; any thread.
//
// Bodies stand in slots, eight to a vector on every machine: whatever is summed is summed in the
// order of slots, and a machine with narrower vectors does the parts of eight by hand. So the
// results are the same bits everywhere. The massive bodies come first; the massless ones begin a
// vector of their own.
#pragma once

#include "Calculation/ForceInstances.h"
#include "Platform/Support/SupportDefs.h"

inline constexpr int32 kSlots = 8;  // in a vector
// Orders come in pairs, a pass each.
inline constexpr int32 kMinSeriesOrder = 8;
inline constexpr int32 kMaxSeriesOrder = 24;
// Whatever cutoff an epoch has, series have a tolerance within these.
inline constexpr double kMinSeriesTolerance = 1e-16;
inline constexpr double kMaxSeriesTolerance = 1e-6;
inline constexpr int32 kMaxPasses = kMaxSeriesOrder / 2;
// Passes that can do without what the passes before have stored of each pair.
inline constexpr int32 kFreshPasses = kMinSeriesOrder / 2;
// So many massive bodies stand in a ring, more in tiles.
inline constexpr int32 kMaxInRing = 16;
inline constexpr int32 kMaxRounds = kMaxInRing / 2;
inline constexpr int32 kMaxGroups = 32;

// Per vector and order three rows of eight numbers. Order k is x_k = (d^k x / dt^k) scale^k / k!,
// for k from 0 to order + 1. Two orders more have what x_0 and x_1 lack, the low halves of the sums
// that they are.
struct SeriesArrays {
    int32 order = 0;
    int32 bodies = 0;
    int32 massive = 0;
    int32 massiveVectors = 0;
    int32 vectors = 0;
    double scale = 0.0;        // s, a power of two; negative when time runs backwards
    double* series = nullptr;  // [vector][order + 4][3][8], m
    double* pull = nullptr;    // [massive vector][8], GM scale^2

    [[nodiscard]] int64 Stride() const { return int64{3 * kSlots} * (order + 4); }
    [[nodiscard]] double* Vector(int32 vector) const { return series + vector * Stride(); }
};

// N <= 16 bodies in a ring: in round r = 1, 2, ... N / 2 body i meets body i + r (mod N). Slots
// behind the last body repeat the ring.
struct RingArrays {
    int32 rounds = 0;
    // GM scale^2 of the body that is met and of the one that meets it; none in the second half of
    // the last round of an even number, where the pairs are met already.
    double pullOfMet[kMaxRounds][kMaxInRing] = {};
    double pullOfMeeting[kMaxRounds][kMaxInRing] = {};
    int64 met[kMaxRounds][kMaxInRing] = {};      // the slot i + r
    int64 meeting[kMaxRounds][kMaxInRing] = {};  // the slot i - r
    // Per round and vector part: differences of all orders, then powers of all orders.
    double* pairs = nullptr;
};

// The pairs of two vectors are a tile.
struct SeriesTile {
    int32 a;
    int32 b;
    int64 block;  // the first of its rotations, each of which holds eight pairs
};

struct TileArrays {
    const SeriesTile* tiles = nullptr;
    int32 countTiles = 0;
    int32 groups = 1;  // a power of two; tile t belongs to group t mod groups
    int64 blocks = 0;
    double* powers = nullptr;  // [order / 2][block][s_k, q_k, s_k+1, q_k+1][8]; null: none kept
    int64 powersStride = 0;
    double* sums = nullptr;         // [group][vector][6][8]
    const uint8* active = nullptr;  // [vector]: goes on to higher orders
};

// The greatest of what the last two orders are to the second and third, squared, of any body.
struct SeriesEnd {
    double last = 0.0;  // order + 1
    double lastButOne = 0.0;
    bool isFinite = true;
    bool isStraight = true;  // nothing pulls any body
};

struct SeriesInstance {
    // All orders of up to 16 massive bodies.
    void (*ring)(const SeriesArrays& arrays, const RingArrays& ring);
    // [k / 2]: the accelerations of orders k and k + 1 that tiles of one group make, into its sums:
    // `count` tiles from its `first` on, in turn from 0, which clears the sums.
    using AddTiles = void (*)(const SeriesArrays& arrays, const TileArrays& tiles, int32 group,
                              int32 first, int32 count);
    AddTiles tiles[kMaxPasses];
    AddTiles freshTiles[kFreshPasses];
    // Orders k + 2 and k + 3 of a massive vector from the sums of all groups.
    void (*sumGroups)(const SeriesArrays& arrays, const TileArrays& tiles, int32 k, int32 vector);
    // The vector's greatest square of orders k, k + 1 against the second and third, where the step
    // is expected to be `theta` scales long.
    double (*activity)(const SeriesArrays& arrays, int32 k, int32 vector, double theta);
    // All orders of one vector of massless bodies, once the series of the massive ones are
    // complete. `scratch`: 2 * order * 8 numbers for each massive body.
    void (*targets)(const SeriesArrays& arrays, int32 vector, double* scratch);
    SeriesEnd (*end)(const SeriesArrays& arrays);
    // Places and velocities at `theta` scales from the series' start, as sums of two numbers:
    // [vector][6][8]; `low` may be null. False when one is not finite.
    bool (*evaluate)(const SeriesArrays& arrays, double theta, double* high, double* low);
    // Into rows [vector][8]: how far each slot's body may be from where it begins, until `theta`
    // scales.
    void (*reach)(const SeriesArrays& arrays, double theta, double* reach);
    // Whether some body in a later slot is at most the sum of both their reaches from the one in a
    // massive slot.
    bool (*isNear)(const SeriesArrays& arrays, const double* reach, int32 slot);
    // The greatest squared tangent of the angles by which a body's path turns in one of the
    // quarters from 0 to `theta`; infinite from a right angle on.
    double (*bend)(const SeriesArrays& arrays, double theta);
};

// Null when this build or this processor has no such instance; the baseline always exists.
const SeriesInstance* FindSeriesInstance(InstructionSet set);
