// What a simulation's window does while RunControl pauses and resumes the calculation. The window
// floor implements it; each operation does nothing by default, which is all that a run without a
// window needs. Called on the thread that owns the simulation.
#pragma once

#include "Platform/Support/SupportDefs.h"

class RunControlView {
public:
    // What the Go/Pause button and menu item offer.
    enum class Offer {
        kGo,
        kPause,
        kWait,  // nothing: they are disabled while the calculation comes to a stop
    };

    virtual ~RunControlView() = default;

    // The window's own recursive lock.
    virtual void LockWindow() {}
    virtual void UnlockWindow() {}

    // Label both, and enable both unless they say "wait".
    virtual void ShowGoPause(Offer) {}
    // Controls that may not change during a run.
    virtual void EnableRunControls(bool /*enable*/) {}

    // Commit pending entries: of the body's name and colours, of what moves it, of the epoch, and
    // of the simulation as a whole.
    virtual void SetNonPhysicalBodyValues() {}
    virtual void SetPhysicalBodyValues() {}
    virtual void SetEpochValues() {}
    virtual void SetSimValues() {}

    // The new epoch is logged and in place and the calculator is about to be let go ('gook' to the
    // displays); the calculator has come to rest ('psar' to the displays).
    virtual void RunStarting() {}
    virtual void RunStopped() {}
};
