#include "Simulation/TrustControl.h"

#include <cmath>
#include <utility>

#include "Displays/Comparison/DifferencesWindow.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/LockingCommand.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/CommonTexts.h"
#include "Resources/Trust.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/RunRemake.h"
#include "Simulation/SimulationControls.h"
#include "Simulation/Trust/AddRunCommand.h"

using Finding = RunHistory::Finding;

namespace {

// To the window: more is known of the question.
constexpr uint32 kJobChanged = FourCC("trjb");
constexpr float kShift = 40.0f;  // of the text's window, from the left-top corner of the other
constexpr int kTimeDigits = 3;

}  // namespace

TrustControl::TrustControl(EpochPortal* portal, RunHistory* history, SimulationControls* controls,
                           const ProgramResources* resources)
    : portal_(portal), history_(history), controls_(controls), resources_(resources), job_([this] {
          WindowServer::Deliver(controls_->Window(), BMessage(kJobChanged));
      }) {}

TrustControl::~TrustControl() {
    BLooper::QuitIfAlive(window_);
}

bool TrustControl::Handle(const BMessage& message) {
    switch (message.what) {
        case kShowTrust:
            Explain();
            return true;
        case kRerunExactly:
        case kLookForChaos:
            Ask(message.what);
            return true;
        case kStopMaking:
            Stop();
            return true;
        case kJobChanged:
            ShowState();
            return true;
        default:
            return false;
    }
}

void TrustControl::Explain() {
    ShowText(ExplainTrust(controls_->GetEvidence(), *resources_));
}

// The item that has begun something ends it.
void TrustControl::Ask(uint32 what) {
    if (job_.IsBusy()) {
        const bool isTheSame = (question_->rerun != nullptr) == (what == kRerunExactly);
        Stop();
        if (isTheSame) return;
    }
    int32 whyNot = kTextRerunOfNothing;
    question_ = MakeQuestion(what, &whyNot);
    if (question_ == nullptr) return controls_->ShowInFull(resources_->InterfaceLabel(whyNot));
    job_.Start([question = question_.get()](const BackgroundJob::Progress& progress) {
        try {
            question->finding = question->rerun != nullptr ? question->rerun->Make(progress)
                                                           : question->probe->Make(progress);
        } catch (const std::bad_alloc&) {
            question->finding = Finding::kLost;
        }
    });
    ShowState();
}

std::shared_ptr<TrustControl::Question> TrustControl::MakeQuestion(uint32 what,
                                                                   int32* whyNot) const {
    const ReadGuard guard(portal_);
    const AbEpoch* const run = portal_->FocusEpoch();
    if (!RunRemake::IsPossible(*run)) return nullptr;
    auto question = std::make_shared<Question>();
    question->start = run->Parent();
    question->run = run;
    question->timeUval = run->TimeUval();
    if (what == kLookForChaos) {
        question->probe = std::make_unique<ChaosProbe>(*run);
        return question;
    }
    const auto method = ExactRerun::MethodFor(run->Order(), run->Cutoff());
    *whyNot = kTextRerunIsBest;
    if (!method) return nullptr;
    question->method = *method;
    question->rerun = std::make_unique<ExactRerun>(*run, *method, history_->Limits(),
                                                   resources_->InterfaceLabel(kLabelNameJoiner));
    return question;
}

void TrustControl::Stop() {
    if (!job_.IsBusy()) return;
    job_.Cancel();
    question_ = nullptr;
    controls_->ShowMessage("");
}

void TrustControl::ShowState() {
    if (question_ == nullptr) return;
    if (job_.TakeDone()) {
        const std::shared_ptr<Question> question = std::exchange(question_, nullptr);
        controls_->ShowMessage("");
        return Answer(*question);
    }
    controls_->ShowMessage(
        FillIn(resources_->InterfaceLabel(question_->rerun != nullptr ? kTextRerunGoesOn
                                                                      : kTextProbeGoesOn),
               {std::to_string(std::lround(100 * job_.Part()))}));
}

void TrustControl::Answer(const Question& question) {
    if (question.finding != Finding::kFound)
        return controls_->ShowInFull(resources_->InterfaceLabel(kTextRerunLost));
    if (question.rerun != nullptr) TakeRun(question);
    ShowText(Describe(question));
}

// One step of the history; what is kept of the run belongs to its epoch.
void TrustControl::TakeRun(const Question& question) {
    std::unique_ptr<Epoch> epoch = question.rerun->MakeEpoch();
    const Epoch* const made = epoch.get();
    const std::weak_ptr<const void> life = made->Life();
    if (!ExecuteFiled(portal_,
                      Named(kCommandRerun, std::make_unique<AddRunCommand>(portal_, question.start,
                                                                           std::move(epoch)))))
        return;
    history_->Adopt(made, life, question.rerun->TakeRun());
    controls_->NoteDifference(question.run, question.rerun->Difference().Largest());
}

std::string TrustControl::TimeText(int32 label, double time, double uval) const {
    return FillIn(resources_->InterfaceLabel(label), {print_double(time / uval, kTimeDigits),
                                                      resources_->TimeUnits().Abbreviation(uval)}) +
           "\n\n";
}

std::string TrustControl::Describe(const Question& question) const {
    const double uval = question.timeUval;
    if (question.probe != nullptr) {
        const auto folding = question.probe->FoldingTime();
        return TimeText(folding ? kTextChaosFolds : kTextChaosNone,
                        folding.value_or(question.probe->Span()), uval);
    }
    const StoryDifference& difference = question.rerun->Difference();
    Evidence evidence;
    evidence.difference = difference.Largest();
    std::string text = TrustWords(Judge(evidence), *resources_) + "\n\n" +
                       FillIn(resources_->InterfaceLabel(kTextTrustDifference),
                              {print_double(difference.Largest(), 2)}) +
                       "\n\n";
    bool isApart = false;
    for (const auto& [label, from] : {std::pair{kTextPixelFrom, difference.PixelFrom()},
                                      std::pair{kTextPercentFrom, difference.PercentFrom()},
                                      std::pair{kTextRadiusFrom, difference.RadiusFrom()},
                                      std::pair{kTextBodiesDiffer, difference.BodiesFrom()}}) {
        if (!from) continue;
        isApart = true;
        text += TimeText(label, *from, uval);
    }
    if (!isApart) text += resources_->InterfaceLabel(kTextNeverApart) + "\n\n";
    return text +
           FillIn(resources_->InterfaceLabel(kTextStoriesDifferBy),
                  {std::to_string(question.method.order), print_double(question.method.cutoff, 2)});
}

void TrustControl::ShowText(const std::string& text) {
    BLooper::QuitIfAlive(window_);
    const BRect frame = controls_->Window()->Frame();
    window_ = new DifferencesWindow({frame.left + kShift, frame.top + kShift}, text,
                                    resources_->InterfaceLabel(kTextTrustTitle));
    window_->Show();
}
