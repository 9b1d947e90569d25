#include "Simulation/SimulationControls.h"

#include "Displays/Base/WindowPlacement.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/PaceControl.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Model/Units/QuantityText.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Platform/Interface/Handles/BScrollView.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Simulation/DisplayList.h"
#include "Simulation/Document/OrderAdvice.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/Epochs/EpochWindow.h"
#include "Simulation/Settings/BodySettingsBox.h"
#include "Simulation/Settings/GlobalControlsBox.h"
#include "Simulation/Simulation.h"
#include "Simulation/SimulationHost.h"
#include "Simulation/SimulationMenus.h"
#include "Simulation/StatusLine.h"
#include "Simulation/SubsidiaryWindows.h"

namespace {

constexpr float kSpacing = 8.0f;
constexpr float kWidest = 2.0f;  // the window, against what it needs

// How often the figures of a run are renewed.
constexpr bigtime_t kRunPulse = 400'000;

constexpr int32 kCountChanged = kSystemAdded | kSystemRemoved | kFocusEpochChanged;

}  // namespace

SimulationControls::SimulationControls(Simulation* simulation, SimulationHost* host,
                                       SimulationDocument* document, DisplayList* displays)
    : simulation_(simulation),
      window_(simulation),
      host_(host),
      document_(document),
      displays_(displays),
      monitor_(document->Portal(), document->GetCalculator()) {
    document_->AddConsumer(monitor_.Consumer());
    document_->KeepPace();
}

SimulationControls::~SimulationControls() = default;

// --- Building ---

void SimulationControls::BuildMainMenuBar() {
    menus_ = std::make_unique<SimulationMenus>(simulation_, host_);
    window_->AddChild(menus_->Bar());
}

void SimulationControls::BuildRootView() {
    rootView_ = new BGroupView("Root View", B_VERTICAL, kSpacing);
    rootView_->SetWindowInsets();
    window_->AddChild(rootView_);
    boxes_ = new BGroupView("Boxes", B_VERTICAL, kSpacing);
    scroll_ = new BScrollView("Scroll", boxes_, BScrollView::Size::kOfTarget);
    rootView_->AddChild(scroll_);
}

void SimulationControls::BuildBodySettingsBox() {
    bodySettings_ = new BodySettingsBox(document_->Portal(), host_->Context());
    boxes_->AddChild(bodySettings_);
}

void SimulationControls::BuildGlobalControlsBox() {
    globalControls_ = new GlobalControlsBox(document_->Portal(), host_->Context());
    boxes_->AddChild(globalControls_);
    pace_ =
        new PaceControl(document_->Portal(), host_->Context().timeUnits, *host_->Context().texts);
    rootView_->AddChild(pace_);
    status_ = new StatusLine(&host_->Resources());
    rootView_->AddChild(status_);
    windows_ = std::make_unique<SubsidiaryWindows>(document_, window_, host_->Context());
    ShowGoPause(Offer::kGo);
}

void SimulationControls::QuitWindows() {
    if (windows_ != nullptr) windows_->Quit();
}

// --- What the user sees ---

void SimulationControls::Redisplay(int32 changes, Moment moment) {
    if (status_ == nullptr) return;
    moment_ = std::move(moment);
    menus_->ShowMoment(moment_.IsPast());
    bodySettings_->Redisplay(changes, moment_);
    globalControls_->Redisplay(changes, moment_);
    pace_->Redisplay(changes);
    ShowHistory();
    if ((changes & (kEpochSettingsChanged | kFocusEpochChanged)) != 0) {
        ShowRunBackwards();
        ShowOrderAdvice();
    }
    if ((changes & kFocusEpochChanged) != 0) ShowResult();
    if ((changes & (kCountChanged | kFocusSystemChanged | kBodyDataChanged | kMomentChanged)) == 0)
        return;
    EpochPortal* const portal = document_->Portal();
    std::size_t bodies = 0;
    bool isGroup = false;
    double lengthUnit = 1.0;
    {
        const ReadGuard guard(portal);
        const EpochPortal shown = moment_.PortalFrom(*portal);
        bodies = shown.BodiesInMassOrder().size();
        const MassSystem* const focus = shown.FocusSystem();
        isGroup = focus->ID() >= 0 && dynamic_cast<const Body*>(focus) == nullptr;
        lengthUnit = focus->PositionUval();
    }
    displays_->SetPreferredUnits(lengthUnit);
    if (status_->ShowBodies(bodies)) FitWindow();
    menus_->ShowFocus(isGroup);
}

void SimulationControls::ShowHistory() {
    menus_->ShowHistory(document_->GetUndoChain());
    menus_->ShowSavesHistory(document_->SavesHistory());
    window_->SetModified(!document_->GetUndoChain()->IsSaved());
}

void SimulationControls::ShowMessage(const std::string& text) {
    if (status_ != nullptr && status_->ShowMessage(text)) FitWindow();
}

void SimulationControls::ShowSeparation(const std::string& text) {
    if (status_ != nullptr && status_->ShowSeparation(text)) FitWindow();
}

void SimulationControls::ShowInFull(const std::string& text) {
    if (status_ != nullptr && status_->ShowInFull(text)) FitWindow();
}

void SimulationControls::ShowRunEvent(const std::string& text) {
    if (RunResult* const result = Result(); result != nullptr) result->event = text;
    if (status_ != nullptr && status_->ShowRunEvent(text)) FitWindow();
}

RunResult* SimulationControls::Result() {
    const ReadGuard guard(document_->Portal());
    return results_.Keep(document_->Portal()->FocusEpoch());
}

void SimulationControls::ShowResult() {
    if (status_->ForgetRun()) FitWindow();
    evidence_ = {};
    RunResult known;
    {
        const ReadGuard guard(document_->Portal());
        const RunResult* const found = results_.Find(document_->Portal()->FocusEpoch());
        if (found == nullptr) return;
        known = *found;
    }
    ShowFigures(known.figures);
    if (!known.event.empty() && status_->ShowRunEvent(known.event)) FitWindow();
}

bool SimulationControls::IsOfNewSimulation() const {
    return simulation_->IsNewlyCreated();
}

void SimulationControls::WindowShown() {
    status_->BreakAnew();
    // On the screen that it has come to.
    FitWindow();
}

// Wider entries show longer numbers; there is nothing to fill a higher window with.
void SimulationControls::FitWindow() {
    if (height_ == 0.0f) window_->GetPreferredSize(&width_, &height_);
    const BScreen screen(window_);
    const float needed = height_ + status_->ExtraHeight();
    const float room = screen.IsValid() ? HeightOfContent(screen.FreeFrame()) : needed;
    const float height = std::min(needed, room);
    const float width = needed > room ? width_ + scroll_->BarWidth() : width_;
    window_->SetSizeLimits(width, kWidest * width, height, height);
    window_->ResizeTo(std::max(width, window_->Frame().Width()), height);
    if (needed <= room) return;
    const BRect frame = FrameOnScreen(window_->Frame(), screen.FreeFrame());
    window_->MoveTo({frame.left, frame.top});
}

void SimulationControls::ShowOpened(const std::string& notice) {
    const ProgramResources& resources = host_->Resources();
    const int32 waiting = displays_->CountWaiting();
    menus_->ShowWaitingDisplays(waiting > 0);
    std::string text = notice;
    if (waiting > 0) {
        if (!text.empty()) text += resources.InterfaceLabel(kTextBetweenFigures);
        text += FillIn(resources.InterfaceLabel(kTextWaitingDisplays), {std::to_string(waiting)});
    }
    ShowInFull(text);
}

void SimulationControls::ShowRun() {
    ShowFigures(monitor_.Measure(system_time()));
    // A run does not report its progress.
    bodySettings_->Redisplay(kBodyDataChanged, moment_);
    globalControls_->Redisplay(kTimeChanged, moment_);
    pace_->ShowWhetherBehind();
}

void SimulationControls::NoteDifference(const AbEpoch* epoch, double difference) {
    {
        const ReadGuard guard(document_->Portal());
        if (!document_->Portal()->HasEpoch(epoch)) return;
        RunResult* const result = results_.Keep(epoch);
        if (result == nullptr) return;
        if (!result->figures.evidence) result->figures.evidence.emplace();
        result->figures.evidence->difference = difference;
        if (epoch != document_->Portal()->FocusEpoch()) return;
    }
    ShowResult();
}

void SimulationControls::ShowFigures(const RunMonitor::Figures& figures) {
    evidence_ = figures.evidence.value_or(Evidence());
    if (status_ == nullptr) return;
    EpochPortal* const portal = document_->Portal();
    double timeUval = 1.0;
    int32 order = 0;
    {
        const ReadGuard guard(portal);
        timeUval = portal->FocusEpoch()->TimeUval();
        order = document_->GetCalculator()->OrderInUse();
    }
    if (status_->ShowRun(figures, timeUval, order)) FitWindow();
}

void SimulationControls::SuggestOrder() {
    suggestsOrder_ = true;
    ShowOrderAdvice();
}

void SimulationControls::ShowOrderAdvice() {
    if (!suggestsOrder_ || status_ == nullptr) return;
    const auto steps = TooManySteps(document_->Portal());
    if (status_->ShowAdvice(steps ? FillIn(host_->Resources().InterfaceLabel(kTextTryHigherOrder),
                                           {Grouped(std::to_string(*steps))})
                                  : std::string()))
        FitWindow();
}

void SimulationControls::NoteMergers(const MergeResult& merged) {
    if (merged.mergers.empty()) return;
    monitor_.Add(merged);
    const ProgramResources& resources = host_->Resources();
    const Merger& first = merged.mergers.front();
    std::string text =
        FillIn(resources.InterfaceLabel(kTextMerger), {first.absorbedName, first.survivorName});
    if (const std::size_t more = merged.mergers.size() - 1; more > 0)
        text = FillIn(resources.InterfaceLabel(kTextManyMergers), {text, std::to_string(more)});
    ShowRunEvent(text);
}

// --- Entries ---

bool SimulationControls::CommitBoxes() {
    const bool name = bodySettings_->CommitNonPhysical();
    const bool motion = bodySettings_->CommitPhysical();
    const bool epoch = globalControls_->CommitEpochValues();
    return name || motion || epoch;
}

void SimulationControls::SetNonPhysicalBodyValues() {
    if (bodySettings_ != nullptr) bodySettings_->CommitNonPhysical();
}

void SimulationControls::SetPhysicalBodyValues() {
    if (bodySettings_ != nullptr) bodySettings_->CommitPhysical();
}

void SimulationControls::SetEpochValues() {
    if (globalControls_ != nullptr) globalControls_->CommitEpochValues();
}

void SimulationControls::SetSimValues() {
    if (windows_ != nullptr) windows_->CommitAnimation();
}

// --- The run ---

void SimulationControls::LockWindow() {
    window_->Lock();
}

void SimulationControls::UnlockWindow() {
    window_->Unlock();
}

void SimulationControls::ShowGoPause(Offer offer) {
    if (globalControls_ == nullptr) return;
    const int32 label = offer == Offer::kGo      ? kLabelGo
                        : offer == Offer::kPause ? kLabelPause
                                                 : kLabelWait;
    const char* const text = host_->Context().texts->Text(label);
    const bool isEnabled = offer != Offer::kWait;
    globalControls_->ShowGoPause(text, isEnabled);
    menus_->ShowGo(text, isEnabled);
    isGoOffered_ = offer == Offer::kGo;
    ShowRunBackwards();
}

void SimulationControls::ShowRunBackwards() {
    // While it runs nobody waits for a lock for this.
    if (!isGoOffered_) return menus_->ShowRunBackwards(false);
    const ReadGuard guard(document_->Portal());
    menus_->ShowRunBackwards(document_->Portal()->FocusEpoch()->Order() > kMaxLowOrder);
}

void SimulationControls::EnableRunControls(bool enable) {
    if (bodySettings_ != nullptr) bodySettings_->EnableRunControls(enable);
    if (globalControls_ != nullptr) globalControls_->EnableRunControls(enable);
}

void SimulationControls::RunStarting() {
    monitor_.Begin();
    SuggestOrder();
    if (windows_ != nullptr) windows_->Epochs()->SetRunning(true);
    displays_->Tell(ProjectionDisplay::kRunStarted);
    window_->SetPulseRate(kRunPulse);
}

void SimulationControls::RunStopped() {
    window_->SetPulseRate(0);
    displays_->Tell(ProjectionDisplay::kRunStopped);
    if (windows_ != nullptr) windows_->Epochs()->SetRunning(false);
    const RunMonitor::Figures figures = monitor_.End();
    if (RunResult* const result = Result(); result != nullptr) result->figures = figures;
    ShowFigures(figures);
    if (pace_ != nullptr) pace_->ShowWhetherBehind();
}
