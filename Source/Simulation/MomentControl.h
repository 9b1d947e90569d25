// What the simulation's window does about the moment shown: begins a branch at one of the past,
// comes back to now, and says that the past is shown. Edits that the user makes there begin a
// branch first, as those of a record go into a copy. Owned by the window and used on its thread,
// except where it says otherwise.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "Model/Sharing/EpochPortal.h"
#include "Simulation/History/ShownMoment.h"

class BMessage;
class EpochPortal;
class ProgramResources;
class RunControl;
class RunHistory;

class MomentControl final : public EditGate {
public:
    // None is owned.
    MomentControl(EpochPortal* portal, RunHistory* history, RunControl* run,
                  const ProgramResources* resources);
    ~MomentControl() override;
    MomentControl(const MomentControl&) = delete;
    MomentControl& operator=(const MomentControl&) = delete;

    [[nodiscard]] ShownMoment* Shown() { return &shown_; }
    // Before the window does what the message asks for. True: it is done, or will be when the
    // moment that it is about is known to the bit.
    bool TakeMessage(const BMessage& message);
    // What was put off and can be done now; null: nothing.
    [[nodiscard]] std::unique_ptr<BMessage> TakeAwaited();
    // Is called by a thread that waits for a moment, with what to tell.
    void SetTeller(std::function<void(const std::string&)> tell) { tell_ = std::move(tell); }
    // Any thread that holds no lock of the document.
    bool BeforeEdit() override { return Branch(); }
    // Takes what there is to be told since the last time: nothing, or a text that may be empty.
    [[nodiscard]] std::optional<std::string> TakeStatus();

private:
    // False: the moment is lost, or was stopped, and nothing was done. Any thread, as above.
    bool Branch();
    // True: the message is put off, or cannot be carried out any more.
    bool Awaits(const BMessage& message);
    [[nodiscard]] bool IsRunning() const;
    // True: the message asks for a system that only the moment has, which is edited now.
    [[nodiscard]] bool EditsPast(const BMessage& message);
    [[nodiscard]] std::string Status() const;

    EpochPortal* const portal_;
    RunHistory* const history_;
    RunControl* const run_;
    const ProgramResources* const resources_;
    ShownMoment shown_;
    std::function<void(const std::string&)> tell_;
    std::unique_ptr<BMessage> awaited_;
    int64 awaitedAt_ = 0;              // which moment it is about
    std::atomic<bool> isLost_{false};  // a moment that should have become a branch
    std::string told_;
    bool wasShort_ = false;
};
