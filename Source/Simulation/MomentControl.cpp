#include "Simulation/MomentControl.h"

#include <chrono>
#include <cmath>

#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Resources/CommonTexts.h"
#include "Resources/TimeLine.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunTarget.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/GroupWindow.h"
#include "Simulation/History/BranchCommand.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/SimulationMenus.h"

namespace {

// What is waited for without another word.
constexpr std::chrono::milliseconds kPatience(250);

}  // namespace

MomentControl::MomentControl(EpochPortal* portal, RunHistory* history, RunControl* run,
                             const ProgramResources* resources)
    : portal_(portal),
      history_(history),
      run_(run),
      resources_(resources),
      shown_(portal, history, resources->InterfaceLabel(kLabelNameJoiner)) {
    portal_->SetEditGate(this);
}

MomentControl::~MomentControl() {
    portal_->SetEditGate(nullptr);
}

bool MomentControl::TakeMessage(const BMessage& message) {
    if (message.what == kMakeRunAgain || message.what == kStopMaking) {
        if (message.what == kStopMaking) awaited_.reset();
        message.what == kMakeRunAgain ? shown_.MakeRunAgain() : shown_.StopMaking();
        // Others stop what they make, too.
        return message.what == kMakeRunAgain;
    }
    if (!shown_.IsPast()) return message.what == kBranchHere || message.what == kBackToNow;
    switch (message.what) {
        case kEditBody:
            return EditsPast(message);
        case kBackToNow:
            shown_.BackToNow();
            return true;
        case kBranchHere:
        case kLogEpoch:
            if (Awaits(message)) return true;
            portal_->CommitChanges();
            Branch();
            return true;
        // An edit, or a run, of what is shown. Where it is lost there is nothing to edit.
        case kTogglePause:
        case kRunBackwards:
        case RunTarget::kMessage:
            // While another one holds the run, as a save does, it does not go.
            if (!run_->UserPaused()) return false;
            [[fallthrough]];
        case kNewBody:
        case kPlaceBody:
        case kSteerBody:
        case kThrowBody:
        case kDeleteCurrentBody:
        case kDeleteBody:
        case kSetRelativeTo:
        case GroupWindow::kGroup:
        case SimulationMenus::kDissolveGroup:
        case kToCenterOfMass:
            if (Awaits(message)) return true;
            portal_->CommitChanges();
            return !Branch();
        // These are about epochs that the user sees in a list, or about steps before.
        case kUndo:
        case kRedo:
        case kEditEpoch:
        case kDeleteEpoch:
            shown_.BackToNow();
            return false;
        default:
            return false;
    }
}

// What is there now, too, is edited as ever.
bool MomentControl::EditsPast(const BMessage& message) {
    int64 system = kNoSystemID;
    if (message.FindInt64(kBodyIDField, &system) != B_OK) return false;
    bool isThere = false;
    {
        const ReadGuard guard(portal_);
        isThere = portal_->FocusEpoch()->SystemFromID(system) != nullptr;
    }
    shown_.SetFocus(isThere ? kNoSystemID : system);
    return !isThere;
}

// The window goes on with other messages, and the display's Escape is heard.
bool MomentControl::Awaits(const BMessage& message) {
    const int64 number = shown_.Number();
    if (IsRunning() || shown_.GetExact({}, kPatience)) return false;
    // One that is lost, or was left, has nothing to edit.
    awaitedAt_ = number;
    if (shown_.IsPast() && shown_.Number() == number)
        awaited_ = std::make_unique<BMessage>(message);
    return true;
}

std::unique_ptr<BMessage> MomentControl::TakeAwaited() {
    if (awaited_ == nullptr) return nullptr;
    const Moment moment = shown_.Get();
    if (moment.IsPast() && !moment.isExact) return nullptr;
    auto message = std::move(awaited_);
    return moment.IsPast() && shown_.Number() == awaitedAt_ ? std::move(message) : nullptr;
}

bool MomentControl::Branch() {
    // A run that has not come to rest yet is what is edited.
    if (IsRunning()) return true;
    auto moment = shown_.GetExact([this] {
        if (tell_) tell_(Status());
    });
    if (!moment) return false;
    if (!moment->IsPast()) return true;
    moment->focus = shown_.Get().focus;
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal_);
        command = MakeBranchCommand(portal_, history_, *moment);
    }
    if (ExecuteFiled(portal_, std::move(command))) return true;
    isLost_ = true;
    shown_.BackToNow();
    return false;
}

bool MomentControl::IsRunning() const {
    const ReadGuard guard(portal_);
    return portal_->GetCalculator()->IsRunning();
}

// --- What is told ---

std::optional<std::string> MomentControl::TakeStatus() {
    if (isLost_.exchange(false) || shown_.TakeWhetherLost())
        return resources_->InterfaceLabel(kTextMomentLost);
    if (!wasShort_ && history_->WasShortOfMemory()) {
        wasShort_ = true;
        return resources_->InterfaceLabel(kTextShortOfMemory);
    }
    std::string status = Status();
    if (const auto refusal = shown_.TakeRefusal(); refusal) {
        told_ = status;
        return resources_->InterfaceLabel(
            *refusal == RunHistory::Finding::kLost ? kTextRunNotReached : kTextRunStartGone);
    }
    if (status == told_) return std::nullopt;
    told_ = status;
    return status;
}

std::string MomentControl::Status() const {
    if (const auto part = shown_.MakingProgress())
        return FillIn(resources_->InterfaceLabel(kTextMakesRun),
                      {std::to_string(std::lround(*part * 100.0))});
    if (!shown_.IsPast()) return {};
    if (const auto part = shown_.Progress())
        return FillIn(resources_->InterfaceLabel(kTextMomentWaits),
                      {std::to_string(std::lround(*part * 100.0))});
    return resources_->InterfaceLabel(kTextLooksAtPast);
}
