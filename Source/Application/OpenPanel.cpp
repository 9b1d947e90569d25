#include "Application/OpenPanel.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>

#include "Application/Prefs/Preferences.h"
#include "Application/RememberedSettings.h"
#include "Interface Widgets/MyFilePanel.h"
#include "Interface Widgets/PanelFolder.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Storage/BPath.h"
#include "Simulation/Document/WindowFields.h"

namespace {

bool IsDirectory(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// The program's own directory; where it is the system's, in which no user keeps documents, the one
// that the program was started in.
std::string FirstDirectory() {
    char path[PATH_MAX];
    if (getappdir(path, sizeof path) == B_OK && access(path, W_OK) == 0) return path;
    return BPath(".").Path();
}

}  // namespace

OpenPanel::OpenPanel(BLooper* target) : target_(target) {}

OpenPanel::~OpenPanel() = default;

void OpenPanel::TakeSettings(const RememberedSettings& settings) {
    const std::string path = IsDirectory(settings.openIn) ? settings.openIn : FirstDirectory();
    static_cast<void>(get_ref_for_path(path.c_str(), &directory_));
    at_ = settings.openAt;
    width_ = settings.openWidth;
    height_ = settings.openHeight;
}

void OpenPanel::AddToSettings(RememberedSettings* settings) const {
    std::string folder;
    if (get_path_for_ref(directory_, &folder) == B_OK && !IsProgramsFolder(folder))
        settings->openIn = folder;
    settings->hasArea = panel_ != nullptr;
    if (panel_ == nullptr) return;
    panel_->GetArea(&settings->openAt, &settings->openWidth, &settings->openHeight);
}

bool OpenPanel::HasArea(const BMessage& document) {
    return document.HasName(kSaveAtField, B_POINT_TYPE);
}

void OpenPanel::PutAreaInto(BMessage* document) const {
    for (const char* name : {kSaveAtField, kSaveWidthField, kSaveHeightField})
        document->RemoveName(name);
    document->AddPoint(kSaveAtField, at_);
    document->AddFloat(kSaveWidthField, width_);
    document->AddFloat(kSaveHeightField, height_);
}

void OpenPanel::Show(Simulation* requester) {
    if (panel_ == nullptr) {
        panel_ = std::make_unique<MyFilePanel>(B_OPEN_PANEL, BMessenger(target_));
        panel_->SetPanelDirectory(&directory_);
        panel_->SetArea(at_, width_, height_);
    } else {
        panel_->SetFrame(panel_->Frame());
    }
    BMessage message(B_REFS_RECEIVED);
    message.AddPointer(kSimulationField, requester);
    panel_->SetMessage(&message);
    panel_->Show();
}

bool OpenPanel::IsShowing() const {
    return panel_ != nullptr && panel_->IsShowing();
}

void OpenPanel::Close() {
    panel_.reset();
}
