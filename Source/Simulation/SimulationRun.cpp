#include "Simulation/SimulationRun.h"

#include "Calculation/CollisionMailbox.h"
#include "Calculation/RunEnding.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Resources/DocumentTexts.h"
#include "Resources/Pace.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunEndingText.h"
#include "Simulation/Document/RunTarget.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/History/HistoryBudget.h"
#include "Simulation/SimulationControls.h"

SimulationRun::SimulationRun(SimulationDocument* document, SimulationControls* controls,
                             const ProgramResources* resources)
    : document_(document),
      controls_(controls),
      resources_(resources),
      history_(document->Portal(), document->GetCalculator()),
      control_(document->Portal(), document->GetCalculator(), controls),
      controller_(document, &control_, resources),
      exchange_(document, &control_, &history_, controls, resources),
      trust_(document->Portal(), &history_, controls, resources) {
    document_->AddConsumer(&history_);
    document_->GetCalculator()->SetGoalIsTold(true);
    HistoryBudget::Shared().Enter(&history_);
}

SimulationRun::~SimulationRun() {
    HistoryBudget::Shared().Leave(&history_);
}

bool SimulationRun::Handle(const BMessage& message) {
    switch (message.what) {
        case kTogglePause:
            if (!IsRunning()) ForgetTarget();
            control_.TogglePause();
            break;
        case RunTarget::kMessage:
            if (const auto target = RunTarget::From(message)) RunTo(*target);
            break;
        case kRunBackwards:
            RunBackwards();
            break;
        case kPauseRun:
            control_.Pause();
            break;
        case kUnPauseRun:
            control_.UnPause();
            break;
        case kRestRun:
            control_.Rest();
            break;
        case kUnRestRun:
            control_.UnRest();
            break;
        case kPauseForUser:
            control_.PauseForUser();
            break;
        case CollisionMailbox::kCollisionMessage:
            Collide(message);
            break;
        case RunEnding::kMessage:
            if (const auto ending = RunEnding::From(message)) End(*ending);
            break;
        case B_PULSE:
            if (IsRunning()) controls_->ShowRun();
            break;
        default:
            return trust_.Handle(message) || exchange_.Handle(message);
    }
    return true;
}

// While the calculator is parked: a run that goes on has another target.
void SimulationRun::RunTo(const RunTarget& target) {
    control_.PauseForUser();
    ForgetTarget();
    double now = 0.0;
    {
        const ReadGuard guard(document_->Portal());
        now = document_->Portal()->FocusEpoch()->Time();
    }
    if (!target.SetOn(document_->GetCalculator(), now))
        return controls_->ShowMessage(resources_->InterfaceLabel(kTextRunNotLater));
    isForMerger_ = target.kind == RunTarget::Kind::kMerger;
    control_.TogglePause();
}

// The user who presses Go wants it to go on.
void SimulationRun::ForgetTarget() {
    RunTarget::ClearOn(document_->GetCalculator());
    isForMerger_ = false;
}

void SimulationRun::RunBackwards() {
    if (IsRunning()) return;
    int32 order = 0;
    {
        const ReadGuard guard(document_->Portal());
        order = document_->Portal()->FocusEpoch()->Order();
    }
    if (order > kMaxLowOrder) {
        ForgetTarget();
        return control_.TogglePause(true);
    }
    controls_->ShowMessage(resources_->InterfaceLabel(kTextNoWayBack));
}

void SimulationRun::Collide(const BMessage& pairs) {
    if (const auto ending = EndingAtContact(document_->Portal(), pairs)) return End(*ending);
    const bool isRunning = IsRunning();
    const MergeResult result = controller_.Collide(pairs, [this](const MergeResult& merged) {
        history_.NoteMergers(merged);
        controls_->NoteMergers(merged);
    });
    // A run's mergers belong to the step that began it; later ones are in no step of the history.
    if (!isRunning && !result.mergers.empty()) {
        document_->GetUndoChain()->MarkUnsaved();
        controls_->ShowHistory();
    }
    if (isRunning && isForMerger_ && !result.mergers.empty()) control_.PauseForUser();
    if (result.unmerged) End(*result.unmerged);
}

void SimulationRun::End(const RunEnding& ending) {
    control_.PauseForUser();
    controls_->ShowRunEvent(RunEndingText(ending, document_->Portal(), *resources_));
}
