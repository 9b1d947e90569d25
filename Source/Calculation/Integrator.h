// One method of integration: what it evaluates, how it chooses its steps, and what it carries from
// step to step and saves. The calculator owns one, chosen by the order of the focus epoch, and does
// all that is the same for every method: the thread, batches, pauses, limits, contacts and
// endings. Called on the calculation thread, and by others while that is parked.
//
// Steps and reports are two things. A method stands at its last report: Time and the arrays that
// MakeRoom gave tell where. It may have computed further than that; so a report may lie anywhere in
// a step, and a step hold any number of them.
//
// The results may depend on the bodies, the settings and what was saved. They may not depend on how
// often Advance was stopped, nor on threads.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Calculation/BodyArrays.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class Body;
class Ranks;
class SeriesStep;
struct StopFlags;

class Integrator {
public:
    // What a run starts from.
    struct Start {
        int32 order;                       // as OrderFor has it
        double cutoff;                     // the relative size of a correction that may be ignored
        double time;                       // s
        const std::vector<Body*>& bodies;  // in mass order
        bool isBackwards = false;          // time falls; only where IsContinuous
        bool passesContacts = false;       // PassContacts follows every contact
    };
    enum class Outcome {
        kReport,      // it stands at the next report
        kContact,     // it stands where bodies touch, see Contacts
        kStopped,     // given up because of `stop`: it stands where it stood
        kTimeStands,  // the next step is too short to change the time: it stands where it stood
        kNothingInteracts,  // all go straight on for ever: it stands at `until`, or where it stood
        kNotFinite,         // the next step's numbers would not be finite: it stands where it stood
    };
    struct Progress {
        Outcome outcome;
        int32 steps = 0;  // that were completed on the way
    };

    Integrator() = default;
    virtual ~Integrator() = default;
    Integrator(const Integrator&) = delete;
    Integrator& operator=(const Integrator&) = delete;

    // The order that it uses where an epoch asks for this one; none: that is not for this method.
    [[nodiscard]] virtual std::optional<int32> OrderFor(int32 asked) const = 0;
    // It knows the motion between two reports: it can end a step anywhere, go back in time, and
    // give LastMotion.
    [[nodiscard]] virtual bool IsContinuous() const = 0;
    // Of the run that was begun: what is used, which need not be what was asked for.
    [[nodiscard]] virtual int32 OrderInUse() const = 0;
    [[nodiscard]] virtual double CutoffInUse() const = 0;
    // 0: as many as the machine has processors.
    virtual void SetThreads(int32 threads) = 0;
    // Those that share the work; null (not owned): nobody.
    virtual void SetRanks(Ranks* ranks) = 0;

    // Room for bodies in mass order, the first `massive` of which have mass. The caller fills it
    // and calls Begin or ResumeRun; from then on positions and velocities are those of the last
    // report. Radii may be changed between two calls of Advance.
    [[nodiscard]] virtual BodyRows MakeRoom(int32 bodies, int32 massive) = 0;
    // A run begins with these bodies. What the method has or was given of their state counts as far
    // as it is the state of these very numbers.
    virtual void Begin(const Start& start) = 0;
    // Goes on to the next report, which is at `until` (s; NaN: no such time) at the latest if the
    // method can end a step anywhere.
    [[nodiscard]] virtual Progress Advance(double until, const StopFlags& stop) = 0;
    // Of the last report, s.
    [[nodiscard]] virtual double Time() const = 0;
    // Somebody has set the time: the same bodies go on from there.
    virtual void SetTime(double time) = 0;
    // After kContact: earlier body descending, then later body descending.
    [[nodiscard]] virtual const std::vector<CollidingPair>& Contacts() const = 0;
    // These bodies go on through each other: they do not touch again until they have been apart.
    virtual void PassContacts() {}
    // Whatever was passed touches as if for the first time.
    virtual void ForgetPassed() = 0;

    // A piece of a step, in its scales: from the report before to the last one.
    struct Motion {
        const SeriesStep* step;  // until the next Advance
        double from;
        double to;
    };
    // None: the motion is not known.
    [[nodiscard]] virtual std::optional<Motion> LastMotion() const { return std::nullopt; }
    // The last report is there, within that motion, in place of where it was.
    virtual void GoBackTo(double /*theta*/) {}

    // Adds the fields that are saved with an epoch, under names of the method's own.
    [[nodiscard]] virtual status_t Archive(BMessage* into) const = 0;
    // Takes them over for the next Begin; nothing of null or of what is no such record.
    virtual void Regenerate(const BMessage* archive) = 0;
    // Adds what else it takes to go on in the middle of a run.
    [[nodiscard]] virtual status_t ArchiveRun(BMessage* into) const = 0;
    // In place of Begin: goes on with the run of Archive and ArchiveRun. B_BAD_DATA: that did not
    // stand at these bodies or at this time. Changes nothing unless all is well.
    [[nodiscard]] virtual status_t ResumeRun(const BMessage& archive, const Start& start) = 0;
};

// The method for epochs of that order; there is one for every number.
[[nodiscard]] std::unique_ptr<Integrator> MakeIntegrator(int32 order);
