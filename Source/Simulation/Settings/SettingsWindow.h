// Base of the small windows of one simulation that hold entries: an observer of the model that
// refreshes by one message for any number of changes, and when it is shown; hidden it rests. Its
// close box hides it. Made by the owner's thread, hidden; ends with Quit (locked), by the owner
// with no lock of the document held. The rules of SubWindow; Changed and CommitChanges may be
// called by any thread.
#pragma once

#include <initializer_list>

#include "Interface Widgets/ChangeInbox.h"
#include "Interface Widgets/EntryGroup.h"
#include "Interface Widgets/SubWindow.h"
#include "Model/Sharing/Observer.h"

class Entry;
class EpochPortal;
struct DisplayContext;

class SettingsWindow : public SubWindow, public Observer {
public:
    // Portal, owner and context are not owned. `titleLabel`: what stands before the simulation's
    // name in the title. `at`: where it is until a document or the user gives it another place.
    SettingsWindow(BPoint at, EpochPortal* portal, BLooper* owner, const DisplayContext& context,
                   int32 titleLabel);

    // Any thread.
    void SetTitleFor(const char* simulation);

    void Changed(int32 changes) override;
    bool CommitChanges() override;

    void MessageReceived(BMessage* message) override;
    void Show() override;
    bool QuitRequested() override;
    void Quit() override;

protected:
    // Entries that are committed and refreshed with the window. Views of the window; before it is
    // shown.
    void AddEntries(std::initializer_list<Entry*> entries) { entries_.Add(entries); }
    // To be called by the constructor of the derived class when all is built: the model's changes
    // come from then on.
    void StartObserving();
    // Before the entries are read. Window's thread, no lock of the document held.
    virtual void AboutToRefresh() {}
    // After they were shown.
    virtual void Refreshed() {}
    [[nodiscard]] const EntryGroup& Entries() const { return entries_; }
    [[nodiscard]] EpochPortal* Portal() const { return portal_; }

private:
    void Refresh();

    EpochPortal* const portal_;
    const int32 titleLabel_;
    EntryGroup entries_;
    ChangeInbox changes_{this};
};
