#include "DocumentLooper.h"

#include <algorithm>

#include "AppDefs.h"
#include "BApplication.h"
#include "BFilePanel.h"
#include "BMessage.h"
#include "BMessenger.h"
#include "CollisionMailbox.h"
#include "InterfaceTexts.h"
#include "ProgramMessages.h"
#include "ProgramResources.h"
#include "ProjectionDisplay.h"
#include "SimulationFile.h"
#include "WindowServer.h"

namespace {

constexpr const char* kDisplays = "Displays";
constexpr const char* kDisplayTypes = "Disp type";
// A display whose archive has no frame.
constexpr BRect kUsualFrame{120.0f, 100.0f, 919.0f, 699.0f};

}  // namespace

DocumentLooper::DocumentLooper(const ProgramResources* resources, const DisplayContext* context,
                               std::string name, std::string path)
    : BLooper(name.c_str()),
      resources_(resources),
      context_(context),
      name_(std::move(name)),
      path_(std::move(path)),
      document_(this),
      run_(document_.Portal(), document_.GetCalculator(), this),
      controller_(&document_, &run_, resources) {}

DocumentLooper::~DocumentLooper() = default;

DocumentError DocumentLooper::Init(const BMessage& record) {
    if (DocumentError error = document_.Load(record); error.Failed()) return error;
    const BMessage& fields = document_.WindowFields();
    BMessage archive;
    int32 type = 0;
    for (int32 i = 0; fields.FindMessage(kDisplays, i, &archive) == B_OK; i++)
        if (fields.FindInt32(kDisplayTypes, i, &type) == B_OK && type == ProjectionDisplay::kType)
            CreateDisplay(&archive);
    if (displays_.empty()) CreateDisplay(nullptr);
    return {};
}

// --- Displays ---

// With the calculator at rest.
void DocumentLooper::CreateDisplay(const BMessage* archive) {
    auto* const display =
        new ProjectionDisplay(kUsualFrame, name_.c_str(), document_.Portal(),
                              document_.GetCalculator()->WriteOk(), this, *context_);
    if (display->Init(name_.c_str()) != 0) return display->Quit();
    if (archive != nullptr) display->Regenerate(*archive);
    displays_.push_back(display);
    document_.AddConsumer(display);
    display->Show();
}

void DocumentLooper::DeleteDisplay(ProjectionDisplay* display) {
    if (std::erase(displays_, display) == 0) return;
    run_.Rest();
    document_.RemoveConsumer(display);
    if (display->Lock()) display->Quit();
    run_.UnRest();
}

void DocumentLooper::TellDisplays(uint32 what) {
    for (ProjectionDisplay* display : displays_)
        WindowServer::Deliver(BMessenger(static_cast<BHandler*>(display)), BMessage(what));
}

void DocumentLooper::RunStarting() {
    TellDisplays(ProjectionDisplay::kRunStarted);
}

void DocumentLooper::RunStopped() {
    TellDisplays(ProjectionDisplay::kRunStopped);
}

// --- Messages ---

void DocumentLooper::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kTogglePause:
            return run_.TogglePause();
        case CollisionMailbox::kCollisionMessage:
            controller_.Collide(*message);
            break;
        case kDeleteMe: {
            void* display = nullptr;
            if (message->FindPointer(kDoomedDisplay, &display) == B_OK)
                DeleteDisplay(static_cast<ProjectionDisplay*>(static_cast<Display*>(display)));
            if (!displays_.empty()) break;
            BMessage doomed(kDeleteMe);
            doomed.AddPointer(kDoomedSimulation, this);
            WindowServer::Deliver(BMessenger(static_cast<BHandler*>(be_app)), doomed);
            break;
        }
        case kUndo:
            controller_.Undo();
            break;
        case kRedo:
            controller_.Redo();
            break;
        case kSave:
            return path_.empty() ? SaveAs() : Save();
        case B_SAVE_REQUESTED:
            return SaveRequested(*message);
        default:
            BLooper::MessageReceived(message);
    }
}

void DocumentLooper::Quit() {
    run_.Pause();
    while (!displays_.empty())
        DeleteDisplay(displays_.back());
    BLooper::Quit();
}

// --- Files ---

BMessage DocumentLooper::DisplayFields() const {
    BMessage fields = document_.WindowFields();
    fields.RemoveName(kDisplays);
    fields.RemoveName(kDisplayTypes);
    for (ProjectionDisplay* display : displays_) {
        BMessage archive;
        if (!display->Lock()) continue;
        const status_t status = display->MiniArchive(&archive);
        display->Unlock();
        if (status != B_OK) continue;
        fields.AddMessage(kDisplays, &archive);
        fields.AddInt32(kDisplayTypes, display->Type());
    }
    return fields;
}

// Errors in file handling are silent.
void DocumentLooper::Save() {
    run_.Pause();
    document_.SetWindowFields(DisplayFields());
    BMessage record;
    if (!document_.Store(&record, true).Failed())
        static_cast<void>(SimulationFile::Write(path_, record));
    run_.UnPause();
}

void DocumentLooper::SaveAs() {
    if (savePanel_ == nullptr)
        savePanel_ =
            std::make_unique<BFilePanel>(B_SAVE_PANEL, BMessenger(static_cast<BHandler*>(this)));
    savePanel_->SetSaveText(name_.c_str());
    savePanel_->Show();
}

void DocumentLooper::SaveRequested(const BMessage& message) {
    entry_ref directory;
    std::string folder;
    std::string name;
    if (message.FindRef("directory", &directory) != B_OK ||
        message.FindString("name", &name) != B_OK || get_path_for_ref(directory, &folder) != B_OK)
        return;
    path_ = folder + '/' + name;
    name_ = name;
    for (ProjectionDisplay* display : displays_)
        display->SetTitle(name_.c_str());
    Save();
}
