// Why a run has ended by itself though nobody asked for it; the calculator posts it to its target.
// A plain value.
#pragma once

#include <optional>

#include "Platform/Support/SupportDefs.h"

class BMessage;
class EpochPortal;

struct RunEnding {
    enum class Reason : int32 {
        kNotFinite = 1,     // after this report some number would not be finite
        kTimeStands,        // a step is too short to change the time
        kNothingInteracts,  // every body moves straight on for ever
        kNotMerged,         // bodies touch that cannot become one
        kNoMemory,          // for the run, or for what takes its reports
        kGoal,              // it was to stop there
        kTouchedBackwards,  // bodies touch on the way back, where no merger can be undone
        kTouched,           // bodies touch, and that ends the runs of this epoch
    };
    static constexpr uint32 kMessage = FourCC("rend");

    Reason reason = Reason::kNotFinite;
    double time = 0.0;  // s, of the last report
    // The pair that is to blame, the later body in mass order first: identifiers and metres.
    struct Pair {
        int64 later = 0;
        int64 earlier = 0;
        double distance = 0.0;
    };
    std::optional<Pair> pair;

    [[nodiscard]] BMessage ToMessage() const;
    // None if the message is no such one.
    [[nodiscard]] static std::optional<RunEnding> From(const BMessage& message);
};

// What contacts are where an epoch's runs end with them. `collisions`: as the calculator mails
// them. None: in the focus epoch bodies that touch merge. Takes the portal's read lock.
[[nodiscard]] std::optional<RunEnding> EndingAtContact(EpochPortal* portal,
                                                       const BMessage& collisions);
