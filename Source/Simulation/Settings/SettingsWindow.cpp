#include "Simulation/Settings/SettingsWindow.h"

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/EpochPortal.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr int32 kEverything = -1;

}  // namespace

SettingsWindow::SettingsWindow(BPoint at, EpochPortal* portal, BLooper* owner,
                               const DisplayContext& context, int32 titleLabel)
    : SubWindow({at.x, at.y, at.x - 1.0f, at.y - 1.0f}, context.texts->Text(titleLabel),
                B_TITLED_WINDOW, B_NOT_ZOOMABLE, owner, context.texts),
      portal_(portal),
      titleLabel_(titleLabel) {}

void SettingsWindow::SetTitleFor(const char* simulation) {
    SetTitle((Texts().Label(titleLabel_) + simulation).c_str());
}

void SettingsWindow::StartObserving() {
    portal_->AddObserver(this);
}

void SettingsWindow::Changed(int32 changes) {
    changes_.Put(changes);
}

bool SettingsWindow::CommitChanges() {
    return entries_.Commit();
}

void SettingsWindow::Refresh() {
    AboutToRefresh();
    entries_.Refresh(portal_);
    Refreshed();
}

void SettingsWindow::MessageReceived(BMessage* message) {
    if (message->what != kRedisplay) return SubWindow::MessageReceived(message);
    changes_.Take();
    // Everything is read when it is shown.
    if (!IsHidden()) Refresh();
}

void SettingsWindow::Show() {
    SubWindow::Show();
    Changed(kEverything);
}

bool SettingsWindow::QuitRequested() {
    Hide();
    return false;
}

void SettingsWindow::Quit() {
    portal_->RemoveObserver(this);
    SubWindow::Quit();
}
