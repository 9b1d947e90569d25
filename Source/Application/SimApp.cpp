#include "SimApp.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <thread>

#include "AbEpoch.h"
#include "AppDefs.h"
#include "BEntry.h"
#include "BMessenger.h"
#include "BNode.h"
#include "BNodeInfo.h"
#include "BPath.h"
#include "DocumentError.h"
#include "GuideWindow.h"
#include "HelpMenu.h"
#include "HelpTexts.h"
#include "InstalledFiles.h"
#include "InterfaceLabels.h"
#include "MessageWindow.h"
#include "ProgramIcons.h"
#include "ProgramMessages.h"
#include "ProgramTexts.h"
#include "RecentDocuments.h"
#include "RememberedSettings.h"
#include "Simulation.h"
#include "SimulationFile.h"
#include "TextTemplate.h"
#include "WindowServer.h"

namespace {

constexpr const char* kSignature = SimulationFile::kPreferredApplication;

// Where a simulation's window is until it has read its document.
constexpr BRect kFirstFrame{40.0f, 40.0f, 240.0f, 240.0f};

// How far a new simulation stands aside of the one before, and how many do so until the next one
// is back where the first was.
constexpr float kAside = 24.0f;
constexpr int kMaxAside = 8;

// So much of the work is lost at most when the program or the machine fails.
constexpr bigtime_t kCopyInterval = 60'000'000;
constexpr uint32 kCopyTime = FourCC("cptm");

BMessenger MessengerTo(BHandler* handler) {
    return BMessenger(handler);
}

// What a document lacks that was copied without its attributes.
void MarkAsDocument(const std::string& path) {
    BNode node(path.c_str());
    BNodeInfo info(&node);
    std::string present;
    if (info.GetPreferredApp(&present) == B_ENTRY_NOT_FOUND)
        info.SetPreferredApp(SimulationFile::kPreferredApplication);
    if (info.GetType(&present) == B_ENTRY_NOT_FOUND) info.SetType(SimulationFile::kType);
}

}  // namespace

SimApp::SimApp(const ProgramResources* resources, Recovery recovery)
    : BApplication(kSignature),
      resources_(resources),
      texts_(resources),
      menus_(texts_, resources->MassUnits(), resources->DistanceUnits(), resources->SpeedUnits(),
             resources->TimeUnits(), InstalledExamples()),
      icon_(ProgramIcons::Mini()),
      context_{&texts_,
               &resources->MassUnits(),
               &resources->DistanceUnits(),
               &resources->SpeedUnits(),
               &resources->TimeUnits(),
               &menus_,
               &icon_},
      recovery_(recovery),
      openPanel_(this),
      newSimulation_(resources->NewSimulation()),
      recoveryOffers_(this, &texts_),
      copyTimes_(MessengerTo(this), BMessage(kCopyTime), kCopyInterval) {
    const BBitmap largeIcon = ProgramIcons::Large();
    WindowServer::SetProgramIcon(&largeIcon);
    ReadSettings();
    if (!newSimulation_.IsEmpty()) openPanel_.PutAreaInto(&newSimulation_);
    AbEpoch::origin.SetName(texts_.Label(kLabelOrigin));
}

SimApp::~SimApp() = default;

// --- What is remembered ---

void SimApp::ReadSettings() {
    RememberedSettings settings;
    if (settings.Load(&defaultResponses_) != B_OK) settings = {};
    openPanel_.TakeSettings(settings);
    std::erase_if(settings.recentDocuments,
                  [](const std::string& path) { return !BEntry(path.c_str()).Exists(); });
    RecentDocuments::Shared().Set(std::move(settings.recentDocuments));
}

void SimApp::WriteSettings() {
    RememberedSettings settings;
    openPanel_.AddToSettings(&settings);
    settings.recentDocuments = RecentDocuments::Shared().Paths();
    // Settings that cannot be kept cost nothing but themselves.
    static_cast<void>(settings.Save(defaultResponses_));
}

void SimApp::GetIcon(BBitmap* bitmap) const {
    if (bitmap->Bounds() == icon_.Bounds() && bitmap->ColorSpace() == icon_.ColorSpace())
        bitmap->SetBits(icon_.Bits(), static_cast<std::size_t>(icon_.BitsLength()));
}

void SimApp::NoteDocument(const char* path) {
    RecentDocuments::Shared().Note(path);
}

// --- Start ---

// Files of the launch have opened their windows before this.
void SimApp::ReadyToRun() {
    if (simulations_.empty()) CreateSimulation();
}

void SimApp::ArgvReceived(const std::vector<std::string>& arguments) {
    for (std::size_t i = 1; i < arguments.size(); i++)
        if (!arguments[i].starts_with("-")) OpenPath(arguments[i]);
}

void SimApp::RefsReceived(BMessage* message) {
    // Who hands files over hears that they are in good hands.
    SendReply(BMessage(B_REPLY));
    void* requester = nullptr;
    // A message from the open panel has the field, even if it holds no simulation.
    const bool isFromPanel = message->FindPointer(kSimulationField, &requester) == B_OK;
    Simulation* reuse = nullptr;
    if (IsOpen(requester) && static_cast<Simulation*>(requester)->IsNewlyCreated())
        reuse = static_cast<Simulation*>(requester);
    // Deliberately the same window for all of them: of several files over an untouched window the
    // last one stays.
    entry_ref ref;
    for (int32 i = 0; message->FindRef("refs", i, &ref) == B_OK; i++)
        OpenFile(ref, isFromPanel, reuse);
}

// --- Simulations ---

bool SimApp::IsOpen(const void* simulation) const {
    return std::find(simulations_.begin(), simulations_.end(), simulation) != simulations_.end();
}

void SimApp::CreateSimulation() {
    BMessage record(newSimulation_);
    if (BPoint at; record.FindPoint("Edit at", &at) == B_OK) {
        const float aside = kAside * static_cast<float>(untitledCount_++ % kMaxAside);
        static_cast<void>(record.ReplacePoint("Edit at", {at.x + aside, at.y + aside}));
    }
    CreateSimulation(record, openPanel_.Directory(), nullptr, true);
}

// Null when there is no memory for another simulation.
Simulation* SimApp::CreateSimulation(const BMessage& archive, const entry_ref& directory,
                                     const char* name, bool isNewlyCreated) {
    try {
        auto record = std::make_unique<BMessage>(archive);
        auto* const simulation = new Simulation(kFirstFrame, this);
        simulations_.push_back(simulation);
        simulation->Init(std::move(record), directory, name, isNewlyCreated);
        return simulation;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void SimApp::DeleteSimulation(Simulation* simulation) {
    if (std::erase(simulations_, simulation) == 0) return;
    if (simulation->Lock()) simulation->Quit();
    quitRound_.Closed(simulation);
    if (simulations_.empty() && (quitRound_.IsUnderWay() || !openPanel_.IsShowing()))
        static_cast<void>(PostMessage(B_QUIT_REQUESTED));
}

// --- Files ---

void SimApp::OpenPath(const std::string& path) {
    entry_ref ref;
    if (get_ref_for_path(path.c_str(), &ref) == B_OK)
        OpenFile(ref, false, nullptr);
    else
        Complain(path, DocumentError::System(ENOENT));
}

void SimApp::OpenRecent(const BMessage& message) {
    std::string path;
    if (message.FindString("path", &path) != B_OK) return;
    if (BEntry(path.c_str()).Exists()) {
        OpenPath(path);
    } else {
        RecentDocuments::Shared().Forget(path);
        ShowBox(MessageWindow::kNotFound, kTextNotFoundTitle,
                FillIn(texts_.Label(kTextNotFound), {path}));
    }
}

// A copy: it is in no file yet.
void SimApp::OpenExample(const BMessage& message) {
    std::string path;
    if (message.FindString("path", &path) != B_OK) return;
    auto archive = std::make_unique<BMessage>();
    if (const DocumentError error = SimulationFile::Read(path, archive.get()); error.Failed())
        return Complain(path, error);
    // The empty simulation that the program began with has served its purpose.
    Simulation* const first = simulations_.size() == 1 ? simulations_.front() : nullptr;
    auto* const simulation = new Simulation(kFirstFrame, this);
    simulations_.push_back(simulation);
    simulation->InitCopy(std::move(archive), openPanel_.Directory(), BPath(path.c_str()).Leaf());
    if (first != nullptr && first->IsNewlyCreated()) DeleteSimulation(first);
}

// What is no document is not opened, and no box says so; standard error tells why.
void SimApp::OpenFile(const entry_ref& ref, bool remembersDirectory, Simulation* reuse) {
    const BEntry entry(ref, true);
    BPath path(ref);
    BEntry parent;
    entry_ref directory;
    if (entry.InitCheck() != B_OK || entry.GetPath(&path) != B_OK)
        return Complain(path.Path(), DocumentError::System(ENOENT));
    BMessage archive;
    const DocumentError error = SimulationFile::Read(path.Path(), &archive);
    const bool hasTag = !error.Failed() || error.text == kTextDamaged ||
                        error.text == kTextNestedTooDeeply || error.text == kTextTooLarge;
    if (!hasTag) return Complain(path.Path(), error);
    if (entry.GetParent(&parent) != B_OK || parent.GetRef(&directory) != B_OK) return;
    if (remembersDirectory) openPanel_.SetDirectory(directory);
    MarkAsDocument(path.Path());
    if (error.Failed()) return Complain(path.Path(), error);
    if (!OpenPanel::HasArea(archive)) openPanel_.PutAreaInto(&archive);
    if (reuse != nullptr)
        reuse->ReLoad(std::make_unique<BMessage>(std::move(archive)), directory, entry.Name());
    else
        CreateSimulation(archive, directory, entry.Name(), false);
}

void SimApp::Complain(const std::string& file, const DocumentError& error) const {
    const std::string text =
        FillIn(texts_.Label(kTextCannotOpen), {file, error.Reason(*resources_)});
    std::fwrite(text.data(), 1, text.size(), stderr);
}

// --- Recovery copies ---

void SimApp::Recover() {
    if (!recoveryOffers_.IsOffering()) return;
    const RecoveryCopy& copy = recoveryOffers_.Current();
    auto archive = std::make_unique<BMessage>();
    if (const DocumentError error = SimulationFile::Read(copy.path, archive.get()); error.Failed())
        return Complain(copy.path, error);
    // The empty simulation that the program began with has served its purpose.
    Simulation* const first = simulations_.size() == 1 ? simulations_.front() : nullptr;
    auto* const simulation = new Simulation(kFirstFrame, this);
    simulations_.push_back(simulation);
    simulation->InitFromRecovery(std::move(archive), copy);
    if (first != nullptr && first->IsNewlyCreated()) DeleteSimulation(first);
}

// All at the same time, and none longer than this: the desktop waits.
void SimApp::KeepRecoveryCopies() {
    constexpr bigtime_t kPatience = 4'000'000;
    std::vector<std::thread> keepers;
    for (Simulation* simulation : simulations_)
        keepers.emplace_back([target = MessengerTo(simulation)] {
            const BMessage keep(Simulation::kKeepRecoveryCopy);
            BMessage reply;
            static_cast<void>(target.SendMessage(&keep, &reply, kPatience / 2, kPatience));
        });
    for (std::thread& keeper : keepers)
        keeper.join();
}

void SimApp::EndSession() {
    KeepRecoveryCopies();
    Quit();
}

// --- The end ---

bool SimApp::QuitRequested() {
    if (simulations_.empty()) return true;
    quitRound_.Begin(simulations_);
    return false;
}

void SimApp::Quit() {
    WriteSettings();
    openPanel_.Close();
    recoveryOffers_.End();
    while (!simulations_.empty()) {
        Simulation* const simulation = simulations_.back();
        simulations_.pop_back();
        if (simulation->Lock()) simulation->Quit();
    }
    for (MessageWindow* const box : boxes_)
        if (box->Lock()) box->Quit();
    boxes_.clear();
    if (guide_ != nullptr && guide_->Lock()) guide_->Quit();
    guide_ = nullptr;
    BApplication::Quit();
}

// --- Boxes ---

void SimApp::AboutRequested() {
    ShowBox(MessageWindow::kAbout, kLabelAboutTitle, texts_.Label(kLabelAboutText));
}

void SimApp::ShowBox(int32 id, int32 title, const std::string& text) {
    if (const auto found = std::ranges::find(boxes_, id, &MessageWindow::ID); found != boxes_.end())
        return (*found)->Activate();
    const error_option ok{texts_.Label(kLabelOK), {}, {}};
    auto* const box = new MessageWindow(id, this, {}, nullptr, true, text.c_str(), nullptr, nullptr,
                                        &ok, nullptr, texts_);
    boxes_.push_back(box);
    box->SetTitle(texts_.Text(title));
    box->Show();
}

void SimApp::MessageWindowClosed(const void* window) {
    if (recoveryOffers_.BoxClosed(window)) return;
    const auto found = std::ranges::find(boxes_, window);
    if (found == boxes_.end()) return;
    MessageWindow* const box = *found;
    boxes_.erase(found);
    if (box->Lock()) box->Quit();
}

void SimApp::ShowGuide() {
    const std::string page = GuidePath();
    if (!BEntry(page.c_str()).Exists())
        return ShowBox(MessageWindow::kNoGuide, kTextGuideTitle,
                       FillIn(texts_.Label(kTextNoGuide), {page}));
    if (guide_ == nullptr) guide_ = new GuideWindow(page, texts_);
    guide_->Show();
    guide_->Activate();
}

void SimApp::Activate() {
    SendReply(BMessage(B_REPLY));
    if (!simulations_.empty())
        simulations_.back()->Activate();
    else if (openPanel_.IsShowing())
        openPanel_.Show(nullptr);
}

// --- Messages ---

void SimApp::AttemptMessage(const BMessage* message, BLooper* looper) {
    constexpr int kMaxMessageAttempts = 100;
    constexpr bigtime_t kPause = 100'000;
    for (int retries = 0; looper->PostMessage(message, looper) != B_OK; retries++) {
        if (retries == kMaxMessageAttempts) throw std::bad_alloc();
        snooze(kPause);
    }
}

// What a part of a simulation sends by way of the application, so that the screen stays live.
void SimApp::HandBack(const BMessage& message) {
    void* simulation = nullptr;
    if (message.FindPointer(kSimulationField, &simulation) != B_OK || !IsOpen(simulation)) return;
    try {
        AttemptMessage(&message, static_cast<Simulation*>(simulation));
    } catch (const std::bad_alloc&) {
        // The window takes nothing any more. The others go on.
    }
}

void SimApp::MessageReceived(BMessage* message) {
    void* pointer = nullptr;
    switch (message->what) {
        case kNewSimulation:
            return CreateSimulation();
        case kOpen:
            message->FindPointer(kSimulationField, &pointer);
            return openPanel_.Show(IsOpen(pointer) ? static_cast<Simulation*>(pointer) : nullptr);
        case kOpenRecent:
            return OpenRecent(*message);
        case ExampleMenu::kOpenExample:
            return OpenExample(*message);
        case HelpMenu::kShowGuide:
            return ShowGuide();
        case kClearRecent:
            return RecentDocuments::Shared().Set({});
        case kSimulationShown:
            // Not before: the new window would come over the box.
            if (recovery_ == Recovery::kOffer) recoveryOffers_.Begin();
            break;
        case kDeleteMe:
            message->FindPointer(kDoomedSimulation, &pointer);
            return DeleteSimulation(static_cast<Simulation*>(pointer));
        case kCloseCancelled:
            message->FindPointer(kSimulationField, &pointer);
            return quitRound_.Cancelled(static_cast<Simulation*>(pointer));
        case kDeleteMessageWindow:
            message->FindPointer(kDoomedMessageWindow, &pointer);
            return MessageWindowClosed(pointer);
        case RecoveryOffers::kRecover:
            return Recover();
        case RecoveryOffers::kDiscard:
            if (recoveryOffers_.IsOffering()) recoveryOffers_.DiscardCurrent();
            break;
        case kCopyTime:
            for (Simulation* const simulation : simulations_)
                static_cast<void>(
                    static_cast<BLooper*>(simulation)->PostMessage(Simulation::kKeepAutomaticCopy));
            break;
        case kSetDefaultResponse:
            return defaultResponses_.Merge(*message);
        case kClearDefaultResponses:
            return defaultResponses_.Clear();
        case B_CANCEL:
            if (simulations_.empty()) static_cast<void>(PostMessage(B_QUIT_REQUESTED));
            break;
        case kBuildMenuBar:
        case kBuildRootView:
        case kBuildBodySettings:
        case kBuildGlobalControls:
        case kArrangeWindow:
        case kShowWindow:
        case FourCC("bld9"):
        case FourCC("sivl"):
        case FourCC("fwfl"):
            return HandBack(*message);
        case kActivateProgram:
            return Activate();
        case B_SESSION_ENDING:
            return EndSession();
        default:
            BApplication::MessageReceived(message);
    }
}
