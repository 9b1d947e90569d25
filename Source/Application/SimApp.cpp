#include "Application/SimApp.h"

#include <new>

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
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Storage/BEntry.h"
#include "Resources/ApplicationFeatures.h"
#include "Resources/CommonTexts.h"
#include "Resources/Help.h"
#include "Resources/MessageBoxes.h"
#include "Resources/SimulationWindow.h"
#include "Simulation/CopyOffer.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/HistoryBudget.h"
#include "Simulation/Simulation.h"

namespace {

constexpr const char* kSignature = SimulationFile::kPreferredApplication;

// So much of the work is lost at most when the program or the machine fails.
constexpr bigtime_t kCopyInterval = 60'000'000;
constexpr uint32 kCopyTime = FourCC("cptm");

BMessenger MessengerTo(BHandler* handler) {
    return BMessenger(handler);
}

}  // namespace

SimApp::SimApp(const ProgramResources* resources, Recovery recovery, Welcome welcome)
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
      welcome_(welcome),
      simulations_(this),
      openPanel_(this),
      opener_(resources, &simulations_, &openPanel_),
      boxes_(this, &texts_),
      recoveryOffers_(this, &texts_),
      copyTimes_(MessengerTo(this), BMessage(kCopyTime), kCopyInterval) {
    WindowServer::SetProgramIcon(&largeIcon_);
    ReadSettings();
    opener_.TakePanelArea();
    AbEpoch::origin.SetName(texts_.Label(kLabelOrigin));
}

SimApp::~SimApp() = default;

// --- What is remembered ---

void SimApp::ReadSettings() {
    RememberedSettings settings;
    if (settings.Load(&defaultResponses_) != B_OK) settings = {};
    openPanel_.TakeSettings(settings);
    galleryShown_ = settings.galleryShown;
    if (settings.historyMegabytes > 0) HistoryBudget::Shared().Set(settings.historyMegabytes);
    std::erase_if(settings.recentDocuments,
                  [](const std::string& path) { return !BEntry(path.c_str()).Exists(); });
    RecentDocuments::Shared().Set(std::move(settings.recentDocuments));
}

void SimApp::WriteSettings() {
    RememberedSettings settings;
    openPanel_.AddToSettings(&settings);
    settings.galleryShown = galleryShown_;
    settings.historyMegabytes = HistoryBudget::Shared().Megabytes();
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
    if (simulations_.IsEmpty())
        opener_.New();
    else
        welcome_ = Welcome::kNone;
}

void SimApp::ArgvReceived(const std::vector<std::string>& arguments) {
    std::vector<std::string> paths;
    for (std::size_t i = 1; i < arguments.size(); i++)
        if (!arguments[i].starts_with("-")) paths.push_back(arguments[i]);
    opener_.OpenPaths(paths);
}

void SimApp::RefsReceived(BMessage* message) {
    opener_.OpenRefs(*message);
}

// --- Simulations ---

void SimApp::ShowGallery() {
    galleryShown_ = true;
    boxes_.ShowGallery();
}

void SimApp::SimulationShown(const void* pointer) {
    opener_.Shown(simulations_.Find(pointer));
    if (welcome_ == Welcome::kGallery && !galleryShown_) ShowGallery();
    // Not before: the new window would come over the box.
    if (recovery_ == Recovery::kOffer) recoveryOffers_.Begin();
}

void SimApp::SimulationClosed(const void* pointer, const BMessage& message) {
    Simulation* const simulation = simulations_.Find(pointer);
    if (simulation == nullptr) return;
    // What it could not read is reported before it goes: the program ends with its last window.
    opener_.Closed(simulation, message);
    simulations_.Delete(simulation);
    QuitIfNothingIsLeft();
}

void SimApp::QuitIfNothingIsLeft() {
    if (simulations_.IsEmpty() && !recoveryOffers_.IsOfferingUnsaved() &&
        (simulations_.IsQuitting() || !openPanel_.IsShowing()))
        static_cast<void>(PostMessage(B_QUIT_REQUESTED));
}

// --- Files ---

void SimApp::OpenRecent(const BMessage& message) {
    std::string path;
    if (message.FindString(kPathField, &path) != B_OK) return;
    if (BEntry(path.c_str()).Exists()) {
        void* requester = nullptr;
        message.FindPointer(kSimulationField, &requester);
        opener_.OpenRecent(path, requester);
    } else {
        RecentDocuments::Shared().Forget(path);
        boxes_.Show(MessageWindow::kNotFound, kTextNotFoundTitle,
                    FillIn(texts_.Label(kTextNotFound), {path}));
    }
}

void SimApp::OpenHandedOver(const BMessage& message) {
    if (!message.HasName(SingleLaunch::kPath)) Activate();
    opener_.OpenHandedOver(message);
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

void SimApp::EndSession() {
    simulations_.KeepRecoveryCopies();
    Quit();
}

// --- The end ---

bool SimApp::QuitRequested() {
    if (simulations_.IsEmpty()) return true;
    simulations_.QuitAll();
    return false;
}

void SimApp::Quit() {
    WriteSettings();
    openPanel_.Close();
    recoveryOffers_.End();
    simulations_.DeleteAll();
    boxes_.QuitAll();
    BApplication::Quit();
}

// --- Boxes ---

void SimApp::AboutRequested() {
    boxes_.Show(MessageWindow::kAbout, kLabelAboutTitle, texts_.Label(kLabelAboutText));
}

void SimApp::MessageWindowClosed(const void* window) {
    if (recoveryOffers_.BoxClosed(window)) return QuitIfNothingIsLeft();
    boxes_.Closed(window);
}

void SimApp::Activate() {
    if (!simulations_.IsEmpty())
        simulations_.All().back()->Activate();
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
    Simulation* const window = simulations_.Find(simulation);
    if (window == nullptr) return;
    try {
        AttemptMessage(&message, window);
    } catch (const std::bad_alloc&) {
        // The window takes nothing any more. The others go on.
    }
}

void SimApp::MessageReceived(BMessage* message) {
    if (!OpenMessage(*message) && !NoticeMessage(*message)) BApplication::MessageReceived(message);
}

bool SimApp::OpenMessage(const BMessage& message) {
    void* pointer = nullptr;
    switch (message.what) {
        case kNewSimulation:
            opener_.New();
            break;
        case kOpen:
            message.FindPointer(kSimulationField, &pointer);
            openPanel_.Show(simulations_.Find(pointer));
            break;
        case kOpenRecent:
            OpenRecent(message);
            break;
        case kClearRecent:
            RecentDocuments::Shared().Set({});
            break;
        case ExampleMenu::kOpenExample:
            if (std::string path; message.FindString(kPathField, &path) == B_OK)
                opener_.OpenExample(path);
            break;
        case kHandOver:
            OpenHandedOver(message);
            break;
        case kOfferCopy:
            OfferCopy(message);
            break;
        case RecoveryOffers::kRecover:
            if (recoveryOffers_.IsOffering()) opener_.OpenRecoveryCopy(recoveryOffers_.Current());
            break;
        case RecoveryOffers::kDiscard:
            if (recoveryOffers_.IsOffering()) recoveryOffers_.DiscardCurrent();
            break;
        case B_CANCEL:
            if (simulations_.IsEmpty()) static_cast<void>(PostMessage(B_QUIT_REQUESTED));
            break;
        default:
            return false;
    }
    return true;
}

bool SimApp::NoticeMessage(const BMessage& message) {
    void* pointer = nullptr;
    switch (message.what) {
        case kSimulationShown:
            message.FindPointer(kSimulationField, &pointer);
            SimulationShown(pointer);
            break;
        case kDeleteMe:
            message.FindPointer(kDoomedSimulation, &pointer);
            SimulationClosed(pointer, message);
            break;
        case kCloseCancelled:
            message.FindPointer(kSimulationField, &pointer);
            simulations_.KeepsOpen(static_cast<Simulation*>(pointer));
            break;
        case kDeleteMessageWindow:
            message.FindPointer(kDoomedMessageWindow, &pointer);
            MessageWindowClosed(pointer);
            break;
        case HelpMenu::kShowGuide:
            boxes_.ShowGuide();
            break;
        case ExampleMenu::kShowGallery:
            ShowGallery();
            break;
        case kSetDefaultResponse:
            defaultResponses_.Merge(message);
            break;
        case kClearDefaultResponses:
            defaultResponses_.Clear();
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
            HandBack(message);
            break;
        case kCopyTime:
            simulations_.KeepAutomaticCopies();
            break;
        case B_SESSION_ENDING:
            EndSession();
            break;
        default:
            return false;
    }
    return true;
}
