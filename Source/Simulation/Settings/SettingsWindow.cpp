#include "Simulation/Settings/SettingsWindow.h"

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/Entry.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/WindowServer.h"

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

void SettingsWindow::AddEntries(std::initializer_list<Entry*> entries) {
    entries_.insert(entries_.end(), entries);
}

void SettingsWindow::StartObserving() {
    portal_->AddObserver(this);
}

void SettingsWindow::Changed(int32 changes) {
    if (pendingChanges_.fetch_or(changes) != 0) return;
    // The one message of this burst must arrive, even if the port is full.
    WindowServer::Deliver(BMessenger(static_cast<BHandler*>(this)), BMessage(kRedisplay));
}

bool SettingsWindow::CommitChanges() {
    bool changes = false;
    for (Entry* const entry : entries_)
        changes = entry->Commit() || changes;
    return changes;
}

void SettingsWindow::Refresh() {
    AboutToRefresh();
    {
        const ReadGuard guard(portal_);
        for (Entry* const entry : entries_)
            entry->Read();
    }
    for (Entry* const entry : entries_)
        entry->ShowValue();
    Refreshed();
}

void SettingsWindow::MessageReceived(BMessage* message) {
    if (message->what != kRedisplay) return SubWindow::MessageReceived(message);
    pendingChanges_ = 0;
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
