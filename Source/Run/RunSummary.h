// What is told about a finished run, for people and for programs. A plain value.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Calculation/RunEnding.h"
#include "Platform/Support/SupportDefs.h"
#include "Simulation/Document/Conservation.h"
#include "Simulation/Trust/Trust.h"

class BMessage;
class ProgramResources;
struct SystemState;

struct RunSummary {
    enum class Ending {
        kDone,
        kCollision,
        kInterrupted,
        kNotFinite,
        kTimeStands,
        kNothingInteracts,
        kNotMerged,
        kNoMemory,
        kTouched
    };
    struct Touch {
        int64 lighterID = 0;
        int64 heavierID = 0;
        std::string lighter;
        std::string heavier;
    };

    // What a shadow of the motion has told.
    struct Chaos {
        double span = 0.0;                  // s, that it was looked for
        std::optional<double> foldingTime;  // s; none: none was seen
        bool isKnown = false;               // else it could not be computed
    };

    std::string document;
    std::string epoch;
    std::string timeUnit;    // abbreviation
    double timeUval = 1.0;   // s
    double startTime = 0.0;  // s
    double endTime = 0.0;    // s
    int64 steps = 0;
    int64 reports = 0;
    int32 order = 0;       // as used
    double cutoff = 0.0;   // likewise
    double seconds = 0.0;  // of real time
    std::size_t bodies = 0;
    std::size_t massiveBodies = 0;
    Drift drift;
    MergerTotals mergers;
    std::optional<Chaos> chaos;  // if it was asked for
    std::string digest;          // SystemState::Digest of the final state
    Ending ending = Ending::kDone;
    std::vector<Touch> touches;  // the bodies that ended the run by touching

    // The pairs as the calculator mails them, named as in the final state.
    void AddTouches(const BMessage& pairs, const SystemState& end);
    // How far it can be believed.
    [[nodiscard]] Trust GetTrust() const {
        return Judge({drift, mergers.count, order, cutoff, {}, {}});
    }
    // As programs read it.
    [[nodiscard]] static std::string_view NameOf(Ending ending);
    [[nodiscard]] static std::string_view NameOf(Trust::Verdict verdict);
    [[nodiscard]] static Ending EndingFor(RunEnding::Reason reason);
    [[nodiscard]] std::string Text(const ProgramResources& resources) const;
    // One JSON object on one line.
    [[nodiscard]] std::string Json() const;

private:
    // Of what is there.
    [[nodiscard]] std::string ChaosText(const ProgramResources& resources) const;
};
