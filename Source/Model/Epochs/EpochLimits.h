// What the settings of an epoch may be, and what they are at first: for whoever makes, reads, edits
// or describes one. No state.
#pragma once

#include <cstdint>
#include <iterator>

#include "Platform/Support/SupportDefs.h"

// Corrections smaller than the cutoff are ignored.
inline constexpr double kDefaultCutoff = 1e-11;
inline constexpr double kMaxCutoff = 0.001;  // itself excluded

constexpr bool IsCutoff(double cutoff) {
    return cutoff > 0.0 && cutoff < kMaxCutoff;
}

// Of the series. Documents may have any number: what is less counts as the least, what is more as
// the greatest.
inline constexpr int32 kMinOrder = 2;
inline constexpr int32 kMaxLowOrder = 4;  // those above belong to another integrator
inline constexpr int32 kMaxOrder = 24;
inline constexpr int32 kDefaultOrder = 4;

constexpr bool IsOrder(int32 order) {
    return order >= kMinOrder && order <= kMaxOrder;
}

// Those that differ from each other: what is between two of them runs as the next one.
inline constexpr int32 kOrders[] = {2, 3, 4, 8, 12, 16, 20, 24};
static_assert(std::end(kOrders)[-1] == kMaxOrder);

// What becomes of bodies that touch.
inline constexpr int32 kContactMerges = 0;  // they become one
inline constexpr int32 kContactStops = 1;   // the run ends
inline constexpr int32 kContactPasses = 2;  // nothing

constexpr bool IsOnContact(int32 what) {
    return what >= kContactMerges && what <= kContactPasses;
}

// Groups within groups, the root system counted: more can neither be made nor read.
inline constexpr int32 kMaxGroupNesting = 256;

// Identifiers of 0 and more are those of ordinary systems.
inline constexpr int64 kNoSystemID = -1;
inline constexpr int64 kOriginID = -2;
inline constexpr int64 kRootSystemID = -3;
inline constexpr int64 kMaxSystemID = INT64_MAX - 1;
// A system that was stored without an identifier has one of these until it gets its own: unlike
// those of its siblings, and never stored.
inline constexpr int64 kFirstProvisionalID = INT64_MIN;
inline constexpr int64 kLastProvisionalID = INT64_MIN + INT32_MAX;
