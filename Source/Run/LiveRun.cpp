#include "Run/LiveRun.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Model/Sharing/ModelGuards.h"
#include "Run/Checkpoints.h"
#include "Run/CollisionWatch.h"
#include "Run/MotionFiles.h"
#include "Run/NumberText.h"
#include "Run/Options.h"
#include "Run/Progress.h"
#include "Run/ReportFile.h"
#include "Run/RunFilm.h"
#include "Run/RunRecorder.h"
#include "Run/RunnerOutput.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kProgressInterval = 200;  // ms
constexpr int kTimeDigits = 10;

}  // namespace

const SystemState& LiveRun::Begin(SystemState start) {
    start_ = std::move(start);
    return start_;
}

void LiveRun::WaitForEnd() {
    Progress progress(parts_.resources, !parts_.options.quiet, run_.goal, run_.startTime,
                      TimeUval(), run_.seconds);
    parts_.checkpoints.Start();
    while (HandleEvent(parts_.events.Wait(Patience(progress)), &progress)) {
    }
    parts_.control.Pause();
    touches_ = parts_.collisions.Take();
    if (const auto ending = parts_.collisions.TakeEnding()) ending_ = ending;
    seconds_ = SecondsUntilNow();
}

// Milliseconds until something is to be done whatever happens.
std::optional<int> LiveRun::Patience(const Progress& progress) const {
    std::optional<int> patience;
    if (progress.IsShown()) patience = kProgressInterval;
    if (parts_.checkpoints.AreWanted()) {
        const int untilDue = parts_.checkpoints.UntilDue();
        patience = std::min(patience.value_or(untilDue), untilDue);
    }
    return patience;
}

// False: the run is over.
bool LiveRun::HandleEvent(RunEvents::Event event, Progress* progress) {
    switch (event) {
        case RunEvents::Event::kTimeout:
            progress->Show(parts_.recorder.Steps(), parts_.recorder.Time());
            return !parts_.checkpoints.IsDue() || KeepCheckpoint(progress);
        case RunEvents::Event::kParked:
            return ResolveCollision(progress);
        case RunEvents::Event::kSignal:
            break;
    }
    Interrupt(progress);
    return false;
}

// False: the run has ended by itself at this very moment. Then it stays at rest.
bool LiveRun::KeepCheckpoint(Progress* progress) {
    if (!Hold(progress)) return false;
    WriteCheckpoint();
    parts_.control.UnRest();
    return true;
}

// A run that has ended by itself at this very moment is as complete as any.
void LiveRun::Interrupt(Progress* progress) {
    isInterrupted_ = Hold(progress);
    if (isInterrupted_ && parts_.checkpoints.AreWanted()) WriteCheckpoint();
}

// The run rests where it can go on, with bodies that touched merged. False if it has ended by
// itself.
bool LiveRun::Hold(Progress* progress) {
    parts_.control.Rest();
    while (parts_.document.GetCalculator()->HasStoppedItself()) {
        parts_.events.ForgetParking();
        if (!ResolveCollision(progress)) return false;
        // The calculator takes up the merged bodies when it goes on, not before.
        parts_.control.UnRest();
        parts_.control.Rest();
    }
    parts_.events.ForgetParking();
    return true;
}

void LiveRun::WriteCheckpoint() {
    static_cast<void>(StartConserved());
    RunRecord now = run_;
    now.steps = parts_.recorder.Steps();
    now.reports = parts_.recorder.Reports();
    now.seconds = SecondsUntilNow();
    now.reportFile = parts_.reports.Mark(&parts_.recorder);
    now.eventFile = parts_.motion.Mark();
    parts_.checkpoints.Write(std::move(now));
}

double LiveRun::SecondsUntilNow() const {
    return run_.seconds + std::chrono::duration<double>(Clock::now() - begin_).count();
}

const Conserved& LiveRun::StartConserved() {
    if (!isStartMeasured_) run_.start = MeasureConserved(start_);
    isStartMeasured_ = true;
    return run_.start;
}

// True when the run, which has stopped, goes on from bodies that have merged.
bool LiveRun::ResolveCollision(Progress* progress) {
    if (run_.stopsAtCollision) return false;
    const BMessage pairs = parts_.collisions.Take();
    if (pairs.IsEmpty()) return false;
    const MergeResult result = parts_.controller.Collide(pairs, [this](const MergeResult& merged) {
        parts_.film.NoteMergers(merged);
        parts_.recorder.Resume(TakeState(parts_.document.Portal()));
    });
    run_.mergers.Add(result);
    progress->Clear();
    const double uval = TimeUval();
    const std::string unit = parts_.resources.TimeUnits().Abbreviation(uval);
    for (const Merger& merger : result.mergers)
        parts_.output.Note(FillIn(parts_.resources.InterfaceLabel(kTextRunnerMerger),
                                  {merger.survivorName, merger.absorbedName,
                                   RoundedText(merger.time / uval, kTimeDigits), unit}));
    ending_ = result.unmerged;
    return !ending_ && target_.kind != RunTarget::Kind::kMerger;
}

double LiveRun::TimeUval() const {
    const ReadGuard guard(parts_.document.Portal());
    return parts_.document.Portal()->FocusEpoch()->TimeUval();
}
