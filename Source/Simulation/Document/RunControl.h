// When the calculation of one simulation runs: the run states and the steps between them. Owned by
// what owns the simulation (its window, or the runner); all operations are called on that owner's
// thread. Pauses nest; a run starts only on the UnPause that undoes the last Pause.
#pragma once

#include "Platform/Support/SupportDefs.h"

class AbEpoch;
class Calculator;
class EpochPortal;
class RunControlView;

class RunControl {
public:
    // None is owned.
    RunControl(EpochPortal* portal, Calculator* calculator, RunControlView* view);

    // Goes on with the run that the calculator was given to resume, in the focus epoch: none is
    // logged. Only while paused once.
    void ResumeRun();
    // Stops the calculation. On return it is parked, every consumer has had its last batch, and the
    // focus epoch is a read-only record that holds the calculator's state.
    void Pause();
    // Undoes one Pause; the last one logs a new epoch below the focus and runs it.
    void UnPause();
    // The user's Go/Pause; Go runs back in time where it is told to, and the method can. Does
    // nothing while the simulation is paused for another reason only.
    void TogglePause(bool isBackwards = false);
    // Pauses for the user unless that is done already: what an edit that needs a standing
    // simulation asks for.
    void PauseForUser();
    // Short holds that the pause count does not see, used in pairs. A run that was held and not
    // edited has the results of one that was not held.
    void Rest();
    void UnRest();

    [[nodiscard]] int32 PauseCount() const { return pauseCount_; }
    [[nodiscard]] bool UserPaused() const { return userPaused_; }
    // True from the first run on.
    [[nodiscard]] bool HasRun() const { return hasRun_; }
    // The epoch in which the last run has ended, which may be gone; null during a run, which goes
    // on in the one in focus, and before the first.
    [[nodiscard]] const AbEpoch* EndedIn() const { return endedIn_; }
    // While held, the last UnPause lowers the count and starts nothing.
    void SetHold(bool hold) { hold_ = hold; }

private:
    [[nodiscard]] bool StartRun();
    void NoteRun();
    [[nodiscard]] bool DupCurrentEpoch();
    void KeepCalculatorState();
    void RestoreCalculatorState();
    // The centre of mass goes to the origin when a run starts.
    bool IsCenteredOnGo() const;

    EpochPortal* const portal_;
    Calculator* const calculator_;
    RunControlView* const view_;
    int32 pauseCount_ = 1;  // 0 or less: running
    bool userPaused_ = true;
    bool hold_ = false;
    bool hasRun_ = false;
    const AbEpoch* endedIn_ = nullptr;
    bool running_ = false;  // a run has been started and not yet paused
};
