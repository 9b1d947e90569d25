#include "Platform/Interface/Handles/BFilePanel.h"

#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Server/FilePanelPart.h"

namespace {

QString ToPath(const entry_ref* directory) {
    std::string path;
    if (directory == nullptr || get_path_for_ref(*directory, &path) != B_OK) return {};
    return ToText(path);
}

template <typename Change>
void ChangePanel(const std::shared_ptr<FilePanelPart>& part, Change change) {
    WindowServer::Queue([part, change = std::move(change)] { change(*part); });
}

}  // namespace

BFilePanel::BFilePanel(file_panel_mode mode, const BMessenger& target, const entry_ref* directory,
                       bool allowsMultiple, const BMessage* message)
    : mode_(mode),
      part_(std::make_shared<FilePanelPart>(mode == B_SAVE_PANEL, allowsMultiple, this)) {
    SetTarget(target);
    SetMessage(message);
    if (directory != nullptr) SetPanelDirectory(directory);
}

BFilePanel::~BFilePanel() {
    ChangePanel(part_, [](FilePanelPart& part) { part.Destroy(); });
}

void BFilePanel::Show() {
    part_->isShowing = true;
    ChangePanel(part_, [](FilePanelPart& part) { part.Show(); });
}

void BFilePanel::Hide() {
    part_->isShowing = false;
    ChangePanel(part_, [](FilePanelPart& part) { part.Hide(); });
}

bool BFilePanel::IsShowing() const {
    return part_->isShowing;
}

void BFilePanel::SetTarget(const BMessenger& target) {
    ChangePanel(part_, [target](FilePanelPart& part) { part.SetTarget(target); });
}

void BFilePanel::SetMessage(const BMessage* message) {
    const BMessage usual(mode_ == B_SAVE_PANEL ? B_SAVE_REQUESTED : B_REFS_RECEIVED);
    ChangePanel(part_, [copy = message == nullptr ? usual : *message](FilePanelPart& part) {
        part.SetMessage(copy);
    });
}

void BFilePanel::SetPanelDirectory(const entry_ref* directory) {
    ChangePanel(part_,
                [path = ToPath(directory)](FilePanelPart& part) { part.SetDirectory(path); });
}

void BFilePanel::SetSaveText(const char* text) {
    ChangePanel(part_, [name = ToText(text)](FilePanelPart& part) { part.SetSaveText(name); });
}

void BFilePanel::SetTitle(const char* title) {
    ChangePanel(part_, [text = ToText(title)](FilePanelPart& part) { part.SetTitle(text); });
}

BRect BFilePanel::Frame() const {
    return WindowServer::Ask([part = part_] {
        const QRect rect = part->Frame();
        return BRect{static_cast<float>(rect.left()), static_cast<float>(rect.top()),
                     static_cast<float>(rect.right()), static_cast<float>(rect.bottom())};
    });
}

void BFilePanel::SetFrame(BRect frame) {
    const QRect rect(static_cast<int>(frame.left), static_cast<int>(frame.top),
                     static_cast<int>(frame.Width()) + 1, static_cast<int>(frame.Height()) + 1);
    ChangePanel(part_, [rect](FilePanelPart& part) { part.SetFrame(rect); });
}
