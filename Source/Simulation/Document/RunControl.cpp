#include "Simulation/Document/RunControl.h"

#include <memory>

#include "Calculation/Calculator.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/NewEpochCommand.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Resources/CommandNames.h"
#include "Simulation/Document/CenterOfMass.h"
#include "Simulation/Document/RunControlView.h"

namespace {

// The window's lock for the length of a block.
class WindowLock {
public:
    explicit WindowLock(RunControlView* view) : view_(view) { view_->LockWindow(); }
    ~WindowLock() { view_->UnlockWindow(); }
    WindowLock(const WindowLock&) = delete;
    WindowLock& operator=(const WindowLock&) = delete;

private:
    RunControlView* const view_;
};

}  // namespace

RunControl::RunControl(EpochPortal* portal, Calculator* calculator, RunControlView* view)
    : portal_(portal), calculator_(calculator), view_(view) {}

void RunControl::Pause() {
    const WindowLock lock(view_);
    if (pauseCount_ > 0) {
        pauseCount_++;
        return;
    }
    view_->ShowGoPause(RunControlView::Offer::kWait);
    Rest();
    view_->SetNonPhysicalBodyValues();
    view_->EnableRunControls(true);
    view_->ShowGoPause(RunControlView::Offer::kGo);
    pauseCount_ = 1;
    view_->RunStopped();
    const WriteGuard guard(portal_);
    KeepCalculatorState();
    endedIn_ = portal_->FocusEpoch();
    portal_->FocusEpoch()->SetWriteable(false);
    portal_->TellObservers(kEpochSettingsChanged);
}

void RunControl::UnPause() {
    const WindowLock lock(view_);
    if (pauseCount_ <= 0) {
        pauseCount_ = 0;
        return;
    }
    if (--pauseCount_ > 0 || hold_) return;
    if (!StartRun()) {
        pauseCount_ = 1;
        return;
    }
    userPaused_ = false;
}

// False: the epoch in focus can have none below it. Nothing runs then.
bool RunControl::StartRun() {
    view_->SetNonPhysicalBodyValues();
    view_->SetPhysicalBodyValues();
    view_->SetEpochValues();
    view_->SetSimValues();
    RestoreCalculatorState();
    view_->EnableRunControls(false);
    view_->ShowGoPause(RunControlView::Offer::kPause);
    if (!DupCurrentEpoch()) {
        view_->EnableRunControls(true);
        view_->ShowGoPause(RunControlView::Offer::kGo);
        return false;
    }
    if (IsCenteredOnGo()) PutCenterOfMassAtOrigin(portal_);
    view_->RunStarting();
    NoteRun();
    calculator_->UnPause();
    return true;
}

void RunControl::ResumeRun() {
    const WindowLock lock(view_);
    if (pauseCount_ != 1) return;
    pauseCount_ = 0;
    {
        const WriteGuard guard(portal_);
        portal_->FocusEpoch()->SetWriteable(true);
    }
    view_->EnableRunControls(false);
    view_->ShowGoPause(RunControlView::Offer::kPause);
    NoteRun();
    calculator_->UnPause(true);
    userPaused_ = false;
}

void RunControl::RestoreCalculatorState() {
    const WriteGuard guard(portal_);
    if (BMessage* state = portal_->FocusEpoch()->CalculatorState())
        calculator_->Regenerate(state);
    else
        calculator_->ForgetPassed();
}

bool RunControl::IsCenteredOnGo() const {
    const ReadGuard guard(portal_);
    return portal_->FocusEpoch()->COMOnGo();
}

void RunControl::NoteRun() {
    hasRun_ = true;
    running_ = true;
    endedIn_ = nullptr;
}

bool RunControl::DupCurrentEpoch() {
    return ExecuteFiled(portal_, Named(kCommandGo, std::make_unique<NewEpochCommand>(portal_)));
}

// With the state in the epoch a document saved after the run goes on from it bit for bit. It does
// no harm when bodies are edited later: the calculator takes only what still adds up to their
// positions.
void RunControl::KeepCalculatorState() {
    if (!running_) return;
    running_ = false;
    auto state = std::make_unique<BMessage>();
    if (calculator_->Archive(state.get(), true) == B_OK)
        portal_->FocusEpoch()->SetCalculatorState(state.release());
}

void RunControl::TogglePause(bool isBackwards) {
    if (pauseCount_ < 1) {
        Pause();
        userPaused_ = true;
    } else if (userPaused_) {
        calculator_->SetBackwards(isBackwards);
        UnPause();
    }
}

void RunControl::PauseForUser() {
    if (userPaused_) return;
    Pause();
    userPaused_ = true;
}

void RunControl::Rest() {
    const WindowLock lock(view_);
    calculator_->Pause();
}

void RunControl::UnRest() {
    const WindowLock lock(view_);
    calculator_->UnPause(true);
}
