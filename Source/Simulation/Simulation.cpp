#include "Simulation/Simulation.h"

#include <algorithm>
#include <utility>

#include "Application/MessageBoxes/MessageWindow.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessageRunner.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/CommonTexts.h"
#include "Resources/DocumentTexts.h"
#include "Resources/SimulationFeatures.h"
#include "Simulation/Document/DocumentSaver.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/Document/WindowFields.h"
#include "Simulation/EditMessages.h"
#include "Simulation/Epochs/EpochWindow.h"
#include "Simulation/History/SavedHistory.h"
#include "Simulation/OpenSimulations.h"
#include "Simulation/SimulationHost.h"
#include "Simulation/SimulationMenus.h"
#include "Simulation/SubsidiaryWindows.h"
#include "Simulation/WindowPlaces.h"

namespace {

// Each has the next one posted.
constexpr uint32 kBuildSteps[] = {kBuildMenuBar,        kBuildRootView, kBuildBodySettings,
                                  kBuildGlobalControls, kArrangeWindow, kShowWindow};
// Obsolete build steps, ignored.
constexpr uint32 kNothingToDo[] = {kBuildNothing, FourCC("txmd")};

constexpr int32 kEverything = -1;

// A document that is read faster than this needs no box that says so.
constexpr bigtime_t kPatience = 300'000;

}  // namespace

Simulation::Simulation(BRect frame, SimulationHost* host)
    : BWindow(frame, "", B_DOCUMENT_WINDOW, B_NOT_ZOOMABLE),
      host_(host),
      document_(this),
      history_(document_.GetUndoChain()),
      controls_(this, host, &document_, &displays_),
      run_(&document_, &controls_, &host->Resources()),
      moments_(document_.Portal(), run_.History(), run_.Control(), &host->Resources()),
      displays_(&document_, run_.History(), moments_.Shown(), run_.Control(), this,
                host->Context()),
      saver_(this, host, &document_, run_.History(), run_.Control(), &controls_, &displays_),
      boxes_(this, host),
      closer_(this, host, &document_, run_.Control(), &saver_, &boxes_) {
    document_.Portal()->Broadcast(false);
    moments_.SetTeller([this](const std::string& text) {
        if (LockingThread() == find_thread(nullptr)) controls_.ShowMessage(text);
    });
}

Simulation::~Simulation() = default;

void Simulation::Init(std::unique_ptr<BMessage> archive, const entry_ref& directory,
                      const char* name, bool isNewlyCreated) {
    archive_ = std::move(archive);
    isNewlyCreated_ = isNewlyCreated;
    if (name == nullptr)
        saver_.File().SetUntitled(directory, host_->Resources().InterfaceLabel(kLabelUntitled));
    else
        saver_.File().SetFile(directory, name, *archive_);
    StartBuilding();
}

void Simulation::InitCopy(std::unique_ptr<BMessage> archive, const entry_ref& directory,
                          const std::string& name) {
    archive_ = std::move(archive);
    saver_.File().SetUntitled(directory, name);
    StartBuilding();
}

void Simulation::InitFromRecovery(std::unique_ptr<BMessage> archive, const RecoveryCopy& copy) {
    archive_ = std::move(archive);
    saver_.File().SetRecovered(copy, *archive_, host_->Resources().InterfaceLabel(kLabelUntitled));
    history_->MarkUnsaved();
    StartBuilding();
}

void Simulation::ReLoad(std::unique_ptr<BMessage> archive, const entry_ref& directory,
                        const char* name) {
    const BAutolock lock(this);
    if (!lock.IsLocked()) return;
    Replacement replacement{std::move(archive), directory, name};
    if (isBuilt_)
        Replace(replacement);
    else
        replacement_ = std::move(replacement);
}

void Simulation::Replace(const Replacement& replacement) {
    EpochPortal* const portal = document_.Portal();
    // Normally it stands, untouched.
    run_.Control()->PauseForUser();
    portal->Broadcast(false);
    if (const DocumentError error = Find(*replacement.archive); error.Failed()) {
        saver_.TellNotOpened(replacement.name, error);
    } else {
        history_->MarkSaved();
        saver_.File().SetFile(replacement.directory, replacement.name, *replacement.archive);
        if (displays_.Count() == 0)
            displays_.Create(ProjectionDisplay::kType, nullptr, replacement.name.c_str());
        SetName(replacement.name);
        saver_.TellOpened(document_.Notices());
        host_->NoteDocument(saver_.File().Path().c_str());
        isNewlyCreated_ = false;
    }
    portal->Broadcast(true);
    portal->TellObservers(kEverything);
}

bool Simulation::IsNewlyCreated() const {
    return isNewlyCreated_ && !history_->CanUndo() && !history_->CanRedo();
}

// --- Building ---

void Simulation::StartBuilding() {
    // In the order in which they were asked for, whichever is built first.
    OpenSimulations::Shared().Enter(this, saver_.File().Identity());
    PassToApplication(BMessage(kBuildMenuBar), true);
    Run();
}

// The next message goes through the application, which hands it back: other windows get their turn
// between the steps. It is not waited for: it may have its port full of windows' steps, and be the
// one that calls.
bool Simulation::BuildStep(uint32 what) {
    if (std::find(std::begin(kNothingToDo), std::end(kNothingToDo), what) != std::end(kNothingToDo))
        return true;
    const auto* const step = std::find(std::begin(kBuildSteps), std::end(kBuildSteps), what);
    if (step == std::end(kBuildSteps) || isBuilt_) return false;
    // Meant for a window that has been here before, at the same address.
    if (step - std::begin(kBuildSteps) != builtSteps_) return true;
    builtSteps_++;
    switch (what) {
        case kBuildMenuBar:
            controls_.BuildMainMenuBar();
            break;
        case kBuildRootView:
            controls_.BuildRootView();
            boxes_.MakeBuilding();
            break;
        case kBuildBodySettings:
            controls_.BuildBodySettingsBox();
            break;
        case kBuildGlobalControls:
            controls_.BuildGlobalControlsBox();
            break;
        case kArrangeWindow:
            ArrangeWindow();
            break;
        default:
            ShowSelf();
    }
    if (!isBuilt_ && !closer_.IsClosing()) PassToApplication(BMessage(step[1]), true);
    return true;
}

void Simulation::ArrangeWindow() {
    controls_.Windows()->Epochs()->SetHistory(run_.History());
    controls_.FitWindow();
    SetName(saver_.File().Name());
    // Without any epoch, as where the program's template is missing, the simulation has none.
    if (const DocumentError error = ReadArchive(); error.Failed() && error.text != kTextNoEpoch)
        closer_.Close(error.Reason(host_->Resources()));
}

DocumentError Simulation::ReadArchive() {
    // This thread is busy until the document is read; the box shows itself.
    const BMessageRunner patience(boxes_.Building(), BMessage(MessageWindow::kShowSelf), kPatience);
    const std::unique_ptr<BMessage> archive = std::move(archive_);
    DocumentError error = Find(*archive);
    if (error.Failed()) return error;
    if (isNewlyCreated_) document_.GetCalculator()->SetPace(Pace::Auto());
    saver_.TellOpened(document_.Notices());
    if (saver_.File().HasFile()) host_->NoteDocument(saver_.File().Path().c_str());
    return {};
}

void Simulation::ShowSelf() {
    if (displays_.Count() == 0) displays_.Create(ProjectionDisplay::kType, nullptr, title_.c_str());
    // The template cannot know how wide the boxes are with this font.
    if (isNewlyCreated_) displays_.KeepClearOf(Frame());
    document_.Portal()->AddObserver(this);
    document_.Portal()->Broadcast(true);
    document_.Portal()->TellObservers(kEverything);
    const bool isAwaited = boxes_.EndBuilding();
    isBuilt_ = true;
    if (const auto replacement = std::exchange(replacement_, std::nullopt)) Replace(*replacement);
    if (!notice_.empty()) controls_.ShowInFull(notice_);
    SetAcceptsFiles(true);
    Show();
    controls_.WindowShown();
    if (isAwaited) Activate();
    PassToApplication(BMessage(kSimulationShown), true);
}

// --- Messages ---

void Simulation::MessageReceived(BMessage* message) {
    if (closer_.IsClosing()) return;
    if (BuildStep(message->what)) return;
    if (std::string text;
        message->what == kTellUser && message->FindString(kTextField, &text) == B_OK)
        return Tell(text);
    const bool hasAllParts = controls_.Windows() != nullptr;
    if (hasAllParts &&
        (moments_.TakeMessage(*message) || FileMessage(message) || RunMessage(*message) ||
         WindowMessage(message) ||
         CarryOutEdit(*message, run_.Controller(), document_.Portal(),
                      *controls_.Windows()->Epochs(), [this](int32 text) {
                          controls_.ShowInFull(host_->Resources().InterfaceLabel(text));
                      }))) {
        if (message->what == kNewBody) controls_.SuggestOrder();
        return;
    }
    BWindow::MessageReceived(message);
}

bool Simulation::FileMessage(BMessage* message) {
    switch (message->what) {
        case SimulationSaver::kSaveNamed:
        case SimulationSaver::kSaveEpochNamed:
            if (const auto choice = SaveChoice::From(*message); choice) {
                const bool isWhole = message->what == SimulationSaver::kSaveNamed;
                saver_.SaveRequested(*choice, isWhole);
                if (isWhole) SetName(choice->name);
            }
            break;
        case kSaveHistory:
            document_.SetSavesHistory(!document_.SavesHistory());
            history_->MarkUnsaved();
            controls_.ShowHistory();
            break;
        case kCloseThenOpen:
            PassToApplication(BMessage(kOpen), false);
            WindowServer::Deliver(this, BMessage(B_QUIT_REQUESTED));
            break;
        case kOpen:
        case B_REFS_RECEIVED:  // files were dropped on the window
            PassToApplication(*message, true);
            break;
        case kKeepRecoveryCopy:
            if (isBuilt_) saver_.KeepRecoveryCopy();
            SendReply(BMessage(B_REPLY));
            break;
        case kKeepAutomaticCopy:
            // A run changes the document all the time.
            if (isBuilt_ && (hasNewChanges_.exchange(false) || run_.IsRunning()))
                saver_.KeepAutomaticCopy();
            break;
        default:
            if (!saver_.Handle(*message) && !closer_.Handle(*message)) return false;
    }
    if (saver_.File().HasFile()) isNewlyCreated_ = false;
    return true;
}

bool Simulation::RunMessage(const BMessage& message) {
    if (!run_.Handle(message)) return false;
    BMessage reply;
    if (message.FindMessage(kReplyField, &reply) == B_OK) SendReply(reply);
    return true;
}

bool Simulation::WindowMessage(BMessage* message) {
    void* pointer = nullptr;
    switch (message->what) {
        case kRedisplay:
            controls_.Redisplay(changes_.Take(), moments_.Shown()->Get());
            if (const auto status = moments_.TakeStatus(); status) controls_.ShowMessage(*status);
            if (const auto awaited = moments_.TakeAwaited(); awaited)
                MessageReceived(awaited.get());
            if (wasTooDeep_.exchange(false))
                controls_.ShowInFull(host_->Resources().InterfaceLabel(kTextEpochsTooDeep));
            break;
        case kNewDisplay:
            if (int32 type = 0; message->FindInt32(kDisplayTypeField, &type) == B_OK)
                displays_.Create(type, nullptr, title_.c_str());
            break;
        case kTellSeparation:
            if (std::string text; message->FindString(kTextField, &text) == B_OK)
                controls_.ShowSeparation(text);
            break;
        case SimulationMenus::kOpenDisplays:
            displays_.OpenWaiting(title_.c_str());
            controls_.ShowOpened({});
            break;
        case kDeleteMe:
            if (message->FindPointer(kDoomedDisplay, &pointer) == B_OK)
                displays_.Delete(static_cast<Display*>(pointer));
            break;
        case kDeleteMessageWindow:
            if (message->FindPointer(kDoomedMessageWindow, &pointer) == B_OK)
                closer_.BoxClosed(static_cast<MessageWindow*>(pointer));
            break;
        default:
            return controls_.Windows()->Handle(*message, *this);
    }
    return true;
}

void Simulation::PassToApplication(const BMessage& message, bool withThis) {
    BMessage copy(message);
    copy.RemoveName(kSimulationField);
    if (withThis) copy.AddPointer(kSimulationField, this);
    WindowServer::Deliver(host_->Application(), copy);
}

void Simulation::Tell(const std::string& text) {
    if (isBuilt_)
        controls_.ShowInFull(text);
    else
        notice_ = text;
}

// --- Observer ---

void Simulation::Changed(int32 changes) {
    // Not as one bit among all of them, which are told when another document is there.
    if (changes == kEpochsTooDeep)
        wasTooDeep_ = true;
    else if (changes != kMomentChanged && changes != kRunsKeptChanged)
        hasNewChanges_ = true;
    changes_.Put(changes);
}

// --- Reading a document ---

void Simulation::SetName(const std::string& name) {
    saver_.File().SetName(name);
    const int32 number = OpenSimulations::Shared().Enter(this, saver_.File().Identity());
    title_ = number == 1 ? name
                         : FillIn(host_->Resources().InterfaceLabel(kTextAnotherWindow),
                                  {name, std::to_string(number)});
    SetTitle(title_.c_str());
    displays_.SetTitles(title_.c_str());
    controls_.Windows()->SetTitles(title_.c_str());
}

DocumentError Simulation::Find(const BMessage& archive) {
    if (DocumentError error = document_.Load(archive); error.Failed()) return error;
    SavedHistory::Read(document_.History(), document_.Portal(), run_.History());
    document_.SetHistory({});
    FindSimWindowInfo(archive);
    displays_.Find(title_.c_str());
    // It was never saved by a window, and cannot know where this one stands.
    if (!archive.HasName(kWindowAtField)) displays_.KeepClearOf(Frame());
    return {};
}

void Simulation::FindSimWindowInfo(const BMessage& archive) {
    // A key that is never written: whether this window is seen is not the document's affair.
    FindWindowInfo(archive, this, kWindowAtField, "Nothing");
    OpenSimulations::Shared().MoveTo(this, this, {Frame().left, Frame().top});
    controls_.Windows()->Find(archive);
    saver_.Panel().FindArea(archive);
}

// --- Closing ---

bool Simulation::QuitRequested() {
    if (closer_.IsClosing()) return false;
    // Half a word that the user has typed is a change, too.
    if (isBuilt_) document_.Portal()->CommitChanges();
    closer_.Request();
    return false;
}

// Called by the application's thread, which holds this window's lock until the end. None of the
// threads that are waited for here takes that lock: they send messages, which are ignored from now
// on.
void Simulation::Quit() {
    closer_.BeginQuit();
    OpenSimulations::Shared().Leave(this);
    document_.Portal()->RemoveObserver(this);
    run_.Control()->Pause();
    displays_.DeleteAll();
    boxes_.DeleteAll();
    saver_.Panel().Close();
    controls_.QuitWindows();
    BWindow::Quit();
}
