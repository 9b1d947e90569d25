#include "Application/SimApp.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>
#include <thread>

#include "Application/GuideWindow.h"
#include "Application/InstalledFiles.h"
#include "Application/MessageBoxes/MessageWindow.h"
#include "Application/ProgramIcons.h"
#include "Application/RememberedSettings.h"
#include "Application/SingleLaunch.h"
#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/RecentDocuments.h"
#include "Model/Epochs/AbEpoch.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/LocalRequests.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Storage/BEntry.h"
#include "Platform/Storage/BNode.h"
#include "Platform/Storage/BNodeInfo.h"
#include "Platform/Storage/BPath.h"
#include "Resources/ApplicationFeatures.h"
#include "Resources/CommonTexts.h"
#include "Resources/DocumentTexts.h"
#include "Resources/Help.h"
#include "Resources/MessageBoxes.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Simulation/CopyOffer.h"
#include "Simulation/Document/DocumentError.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/Document/WindowFields.h"
#include "Simulation/Simulation.h"

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
      largeIcon_(ProgramIcons::Large()),
      context_{&texts_,
               &resources->MassUnits(),
               &resources->DistanceUnits(),
               &resources->SpeedUnits(),
               &resources->TimeUnits(),
               &menus_,
               &icon_,
               &largeIcon_},
      recovery_(recovery),
      openPanel_(this),
      newSimulation_(resources->NewSimulation()),
      openRequests_(resources),
      recoveryOffers_(this, &texts_),
      copyTimes_(MessengerTo(this), BMessage(kCopyTime), kCopyInterval) {
    WindowServer::SetProgramIcon(&largeIcon_);
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
    const auto request = OpenRequests::Begin(nullptr);
    for (std::size_t i = 1; i < arguments.size(); i++)
        if (!arguments[i].starts_with("-")) OpenPath(arguments[i], nullptr, request);
    End(request);
}

void SimApp::RefsReceived(BMessage* message) {
    void* requester = nullptr;
    // A message from the open panel has the field, even if it holds no simulation.
    const bool isFromPanel = message->FindPointer(kSimulationField, &requester) == B_OK;
    // Deliberately the same window for all of them: of several files over an untouched window the
    // last one stays.
    Simulation* const reuse = FindUntouched(requester);
    const auto request = OpenRequests::Begin(FindOpen(requester));
    entry_ref ref;
    for (int32 i = 0; message->FindRef(kRefsField, i, &ref) == B_OK; i++)
        OpenFile(ref, isFromPanel, reuse, request);
    End(request);
}

// --- Simulations ---

Simulation* SimApp::FindOpen(const void* simulation) const {
    const auto found = std::find(simulations_.begin(), simulations_.end(), simulation);
    return found == simulations_.end() ? nullptr : *found;
}

Simulation* SimApp::FindUntouched(const void* simulation) const {
    Simulation* const found = FindOpen(simulation);
    return found != nullptr && found->IsNewlyCreated() ? found : nullptr;
}

Simulation* SimApp::CreateSimulation() {
    BMessage record(newSimulation_);
    if (BPoint at; record.FindPoint(kWindowAtField, &at) == B_OK) {
        const float aside = kAside * static_cast<float>(untitledCount_++ % kMaxAside);
        static_cast<void>(record.ReplacePoint(kWindowAtField, {at.x + aside, at.y + aside}));
    }
    return CreateSimulation(record, openPanel_.Directory(), nullptr, true);
}

Simulation* SimApp::CreateSimulation(const BMessage& archive, const entry_ref& directory,
                                     const char* name, bool isNewlyCreated) {
    return BeginSimulation([&](Simulation* simulation) {
        simulation->Init(std::make_unique<BMessage>(archive), directory, name, isNewlyCreated);
    });
}

// Null when there is no memory, or no thread, for another simulation.
Simulation* SimApp::BeginSimulation(const std::function<void(Simulation*)>& init) {
    Simulation* simulation = nullptr;
    try {
        simulation = new Simulation(kFirstFrame, this);
        simulations_.push_back(simulation);
        init(simulation);
        return simulation;
    } catch (const std::bad_alloc&) {
    } catch (const std::system_error&) {
    }
    if (std::erase(simulations_, simulation) > 0) QuitIfAlive(simulation);
    return nullptr;
}

void SimApp::SimulationShown(const void* pointer) {
    Simulation* const simulation = FindOpen(pointer);
    if (const auto reading = openRequests_.Take(simulation); reading) {
        reading->request->opened = simulation;
        if (Simulation* const replaced = FindUntouched(reading->replaced); replaced != nullptr)
            DeleteSimulation(replaced);
        End(reading->request);
    }
    // Not before: the new window would come over the box.
    if (recovery_ == Recovery::kOffer) recoveryOffers_.Begin();
}

void SimApp::SimulationClosed(const void* pointer, const BMessage& message) {
    Simulation* const simulation = FindOpen(pointer);
    if (simulation == nullptr) return;
    // What it could not read is told before it goes: the program would end with its last window.
    if (const auto reading = openRequests_.Take(simulation); reading) {
        if (std::string reason; message.FindString(kReasonField, &reason) == B_OK)
            reading->request->complaints.push_back({reading->path, reason});
        End(reading->request);
    }
    DeleteSimulation(simulation);
}

void SimApp::DeleteSimulation(Simulation* simulation) {
    if (std::erase(simulations_, simulation) == 0) return;
    QuitIfAlive(simulation);
    quitRound_.Closed(simulation, simulations_);
    QuitIfNothingIsLeft();
}

void SimApp::QuitIfNothingIsLeft() {
    if (simulations_.empty() && !recoveryOffers_.IsOfferingUnsaved() &&
        (quitRound_.IsUnderWay() || !openPanel_.IsShowing()))
        static_cast<void>(PostMessage(B_QUIT_REQUESTED));
}

// --- Files ---

void SimApp::OpenPath(const std::string& path, Simulation* reuse,
                      const OpenRequests::Request& request) {
    entry_ref ref;
    if (get_ref_for_path(path.c_str(), &ref) == B_OK)
        OpenFile(ref, false, reuse, request);
    else
        Complain(request, path, DocumentError::System(ENOENT));
}

void SimApp::OpenRecent(const BMessage& message) {
    std::string path;
    if (message.FindString(kPathField, &path) != B_OK) return;
    if (BEntry(path.c_str()).Exists()) {
        void* requester = nullptr;
        message.FindPointer(kSimulationField, &requester);
        const auto request = OpenRequests::Begin(FindOpen(requester));
        OpenPath(path, FindUntouched(requester), request);
        End(request);
    } else {
        RecentDocuments::Shared().Forget(path);
        ShowBox(MessageWindow::kNotFound, kTextNotFoundTitle,
                FillIn(texts_.Label(kTextNotFound), {path}));
    }
}

// A copy: it is in no file yet.
void SimApp::OpenExample(const BMessage& message) {
    std::string path;
    if (message.FindString(kPathField, &path) != B_OK) return;
    OpenInsteadOfFirst(path, [&](Simulation* simulation, std::unique_ptr<BMessage> archive) {
        simulation->InitCopy(std::move(archive), openPanel_.Directory(),
                             BPath(path.c_str()).Leaf());
    });
}

// The empty simulation that the program began with has served its purpose, if all goes well.
void SimApp::OpenInsteadOfFirst(
    const std::string& path,
    const std::function<void(Simulation*, std::unique_ptr<BMessage>)>& init) {
    Simulation* const first =
        simulations_.size() == 1 ? FindUntouched(simulations_.front()) : nullptr;
    const auto request = OpenRequests::Begin(first);
    auto archive = std::make_unique<BMessage>();
    const DocumentError error = SimulationFile::Read(path, archive.get());
    Simulation* reader = nullptr;
    if (!error.Failed())
        reader =
            BeginSimulation([&](Simulation* simulation) { init(simulation, std::move(archive)); });
    if (reader != nullptr)
        openRequests_.Await(reader, {request, path, first});
    else
        Complain(request, path, error.Failed() ? error : DocumentError::System(ENOMEM));
    End(request);
}

// The program that handed the documents over waits for the answer.
void SimApp::OpenHandedOver(const BMessage& message) {
    int32 number = 0;
    if (message.FindInt32(LocalRequests::kNumber, &number) != B_OK) return;
    if (!message.HasName(SingleLaunch::kPath)) Activate();
    const auto request = OpenRequests::Begin(nullptr, number);
    std::string path;
    for (int32 i = 0; message.FindString(SingleLaunch::kPath, i, &path) == B_OK; i++)
        OpenPath(path, nullptr, request);
    End(request);
}

// What is no document is not opened, and no box says so; the window that asked tells why.
void SimApp::OpenFile(const entry_ref& ref, bool remembersDirectory, Simulation* reuse,
                      const OpenRequests::Request& request) {
    const BEntry entry(ref, true);
    BPath path(ref);
    BEntry parent;
    entry_ref directory;
    if (entry.InitCheck() != B_OK || entry.GetPath(&path) != B_OK)
        return Complain(request, path.Path(), DocumentError::System(ENOENT));
    BMessage archive;
    const DocumentError error =
        SimulationFile::Read(path.Path(), &archive, SimulationFile::Stamping::kInRecord);
    const bool hasTag = !error.Failed() || error.text == kTextDamaged ||
                        error.text == kTextNestedTooDeeply || error.text == kTextTooLarge;
    if (!hasTag) return Complain(request, path.Path(), error);
    if (entry.GetParent(&parent) != B_OK || parent.GetRef(&directory) != B_OK)
        return Complain(request, path.Path(), DocumentError::System(ENOENT));
    if (remembersDirectory) openPanel_.SetDirectory(directory);
    MarkAsDocument(path.Path());
    if (error.Failed()) return Complain(request, path.Path(), error);
    if (!OpenPanel::HasArea(archive)) openPanel_.PutAreaInto(&archive);
    if (reuse != nullptr)
        reuse->ReLoad(std::make_unique<BMessage>(std::move(archive)), directory, entry.Name());
    else if (Simulation* const reader = CreateSimulation(archive, directory, entry.Name(), false))
        openRequests_.Await(reader, {request, path.Path()});
    else
        Complain(request, path.Path(), DocumentError::System(ENOMEM));
}

void SimApp::Complain(const OpenRequests::Request& request, const std::string& path,
                      const DocumentError& error) const {
    request->complaints.push_back({path, error.Reason(*resources_)});
}

void SimApp::End(const OpenRequests::Request& request) {
    if (!OpenRequests::End(request.get())) return;
    BMessage answer(B_REPLY);
    for (const std::string& complaint : openRequests_.Lines(*request)) {
        answer.AddString(SingleLaunch::kComplaint, complaint);
        const std::string line = FillIn(texts_.Label(kTextPrinted), {complaint});
        if (request->handOver == 0) std::fwrite(line.data(), 1, line.size(), stderr);
    }
    if (request->handOver != 0) LocalRequests::Answer(request->handOver, answer);
    if (request->complaints.empty()) return;
    if (Simulation* const window = WindowFor(*request); window != nullptr) {
        BMessage message(kTellUser);
        message.AddString(kTextField, openRequests_.Summary(*request));
        WindowServer::Deliver(MessengerTo(window), message);
        if (!window->IsHidden()) window->Activate();
    }
}

// The window that asked; else one of those that came of it, else an untouched new simulation.
Simulation* SimApp::WindowFor(const OpenRequest& request) {
    for (const Simulation* const window : {request.requester, request.opened})
        if (Simulation* const open = FindOpen(window); open != nullptr) return open;
    for (Simulation* const simulation : simulations_)
        if (simulation->IsNewlyCreated()) return simulation;
    return quitRound_.IsUnderWay() ? nullptr : CreateSimulation();
}

// --- Recovery copies ---

void SimApp::Recover() {
    if (!recoveryOffers_.IsOffering()) return;
    const RecoveryCopy& copy = recoveryOffers_.Current();
    OpenInsteadOfFirst(copy.path, [&](Simulation* simulation, std::unique_ptr<BMessage> archive) {
        simulation->InitFromRecovery(std::move(archive), copy);
    });
}

// What could not be saved in the place that the user wanted, and would be closed now.
void SimApp::OfferCopy(const BMessage& message) {
    const std::optional<CopyOffer> offer = CopyOffer::From(message);
    if (!offer) return;
    // What is known of a place that is gone may be the name alone.
    const bool isPath = offer->path.starts_with('/');
    const RecoveryCopy copy{offer->copy, offer->name, isPath ? offer->path : "", 0};
    recoveryOffers_.OfferUnsaved(copy, offer->reason);
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
        QuitIfAlive(simulation);
    }
    for (MessageWindow* const box : boxes_)
        QuitIfAlive(box);
    boxes_.clear();
    QuitIfAlive(guide_);
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
    if (recoveryOffers_.BoxClosed(window)) return QuitIfNothingIsLeft();
    const auto found = std::ranges::find(boxes_, window);
    if (found == boxes_.end()) return;
    MessageWindow* const box = *found;
    boxes_.erase(found);
    QuitIfAlive(box);
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
    message.FindPointer(kSimulationField, &simulation);
    Simulation* const window = FindOpen(simulation);
    if (window == nullptr) return;
    try {
        AttemptMessage(&message, window);
    } catch (const std::bad_alloc&) {
        // The window takes nothing any more. The others go on.
    }
}

void SimApp::MessageReceived(BMessage* message) {
    void* pointer = nullptr;
    switch (message->what) {
        case kNewSimulation:
            CreateSimulation();
            break;
        case kOpen:
            message->FindPointer(kSimulationField, &pointer);
            return openPanel_.Show(FindOpen(pointer));
        case kOpenRecent:
            return OpenRecent(*message);
        case ExampleMenu::kOpenExample:
            return OpenExample(*message);
        case HelpMenu::kShowGuide:
            return ShowGuide();
        case kClearRecent:
            return RecentDocuments::Shared().Set({});
        case kSimulationShown:
            message->FindPointer(kSimulationField, &pointer);
            return SimulationShown(pointer);
        case kDeleteMe:
            message->FindPointer(kDoomedSimulation, &pointer);
            return SimulationClosed(pointer, *message);
        case kCloseCancelled:
            message->FindPointer(kSimulationField, &pointer);
            return quitRound_.Cancelled(static_cast<Simulation*>(pointer));
        case kDeleteMessageWindow:
            message->FindPointer(kDoomedMessageWindow, &pointer);
            return MessageWindowClosed(pointer);
        case kOfferCopy:
            return OfferCopy(*message);
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
        case kObsoleteSteps[0]:
        case kObsoleteSteps[1]:
        case kObsoleteSteps[2]:
            return HandBack(*message);
        case kHandOver:
            return OpenHandedOver(*message);
        case B_SESSION_ENDING:
            return EndSession();
        default:
            BApplication::MessageReceived(message);
    }
}
