// The browser of a simulation's epochs: the tree in columns, from which epochs are restored,
// renamed and deleted. Made (hidden) by the simulation window, which shows it and ends it with
// Quit, locked, with no lock of the document held; otherwise the rules of SubWindow. Closing hides
// it.
//
// Restoring, deleting and logging are asked of the owner (kEditEpoch, kDeleteEpoch, kLogEpoch),
// which pauses the run for them; the first two carry int32 "index", the position in visiting order,
// and pointer "Epoch": EpochFor finds the epoch. Renaming needs no pause and is carried out here,
// so that a half-typed name can be committed on any thread.
#pragma once

#include <atomic>
#include <string>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/ChangeInbox.h"
#include "Interface Widgets/SubWindow.h"
#include "Model/Sharing/Observer.h"
#include "Simulation/Epochs/EpochList.h"

class AbEpoch;
class BColumnListView;
class BMenu;
class BMenuItem;
class EpochPortal;

class EpochWindow : public SubWindow, public Observer {
public:
    // `root`: the parent of the top-level epochs. Nothing is owned; all but the context itself must
    // outlive the window.
    EpochWindow(EpochPortal* portal, AbEpoch* root, BLooper* owner, const DisplayContext& context);

    // Where the runs' pictures come from. Not owned. On the owner's thread.
    void SetHistory(const RunHistory* history);
    // The window's title becomes "Epochs for <simulation>". Any thread.
    void SetTitleFor(const char* simulation);
    // The owner tells when a run starts, and when it has ended. Any thread.
    void SetRunning(bool isRunning);

    // The epoch that a message of this window is about; null if it has gone since. Takes the read
    // lock; any thread, and the window's lock is not needed.
    [[nodiscard]] AbEpoch* EpochFor(const BMessage& message) const;

    void Changed(int32 changes) override;
    // Enters a name that is being typed.
    bool CommitChanges() override;

    void MessageReceived(BMessage* message) override;
    void DispatchMessage(BMessage* message, BHandler* handler) override;
    void Show() override;
    bool QuitRequested() override;
    void Quit() override;

private:
    // What the list and the menus ask of the window, about the selected epoch.
    static constexpr uint32 kRestoreSelected = FourCC("rsel");
    static constexpr uint32 kRenameSelected = FourCC("nsel");
    static constexpr uint32 kDeleteSelected = FourCC("dsel");
    static constexpr uint32 kSelected = FourCC("slct");
    static constexpr uint32 kRenamed = FourCC("rnmd");

    // An item that needs an epoch to be selected, in the menu bar and in the list's own menu.
    struct Items {
        BMenuItem* inBar;
        BMenuItem* inList;
        void SetEnabled(bool isEnabled) const;
    };

    void BuildMenus();
    void AddToBoth(int32 label, uint32 what, Items* items);
    void Redisplay(int32 changes);
    void FollowFocus(int64 before);
    void EnableItems();
    void SendSelected(uint32 what) const;
    void Rename(int64 key, const std::string& name);

    EpochPortal* const portal_;
    AbEpoch* const root_;
    RunPictures pictures_;
    EpochList epochs_;
    BColumnListView* list_;
    BMenu* epochMenu_ = nullptr;
    BMenu* listMenu_ = nullptr;
    Items restore_{};
    Items rename_{};
    Items delete_{};
    ChangeInbox changes_{this};
    std::atomic<bool> isRunning_{false};
};
