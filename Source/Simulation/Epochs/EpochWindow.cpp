#include "Simulation/Epochs/EpochWindow.h"

#include <memory>

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/SetEpochNameCommand.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Lists/BColumnListView.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/CommandNames.h"
#include "Resources/CommonTexts.h"
#include "Resources/EpochFeatures.h"
#include "Resources/EpochWindow.h"
#include "Resources/Menus.h"

namespace {

// Until the owner gives it another place and size.
constexpr BRect kFirstFrame{363.0f, 588.0f, 882.0f, 787.0f};
constexpr float kMinWidth = 58.0f;  // in sizes of the plain font: all columns are seen
constexpr float kMinHeight = 10.0f;
constexpr float kMax = 32000.0f;

// How often the time of a run that goes on is shown anew.
constexpr bigtime_t kRunPulse = 500'000;

constexpr int32 kEverything = -1;
constexpr int32 kTreeChanges = kEpochAdded | kEpochRemoved | kEpochRenamed | kFocusEpochChanged;
constexpr int32 kContentChanges =
    kTimeChanged | kSystemAdded | kSystemRemoved | kEpochSettingsChanged;

}  // namespace

EpochWindow::EpochWindow(EpochPortal* portal, AbEpoch* root, BLooper* owner,
                         const DisplayContext& context)
    : SubWindow(kFirstFrame, "", B_TITLED_WINDOW, B_ASYNCHRONOUS_CONTROLS, owner, context.texts),
      portal_(portal),
      root_(root),
      epochs_(context.texts, context.timeUnits),
      list_(new BColumnListView("Epochs", epochs_.Columns(), new BMessage(kRestoreSelected))) {
    epochs_.SetPictures(&pictures_);
    const float unit = BFont().Size();
    SetSizeLimits(kMinWidth * unit, kMax, kMinHeight * unit, kMax);
    BuildMenus();
    list_->SetAccessibleName(Texts().Text(kTextEpochList));
    list_->SetSelectionMessage(new BMessage(kSelected));
    list_->SetDeletionMessage(new BMessage(kDeleteSelected));
    list_->SetRenameMessage(new BMessage(kRenamed));
    list_->SetStretch(1, 1);
    AddChild(list_);
    list_->MakeFocus();
    EnableItems();
    portal_->AddObserver(this);
}

// --- Menus ---

void EpochWindow::BuildMenus() {
    auto* const bar = new BMenuBar("Menu Bar");
    epochMenu_ = new BMenu(Texts().Text(kLabelEpoch));
    listMenu_ = new BPopUpMenu("Epoch", false, false);
    AddToBoth(kTextRestoreEpoch, kRestoreSelected, &restore_);
    AddToBoth(kTextRenameEpoch, kRenameSelected, &rename_);
    AddToBoth(kLabelDeleteEpoch, kDeleteSelected, &delete_);
    epochMenu_->AddSeparatorItem();
    listMenu_->AddSeparatorItem();
    Items log{};
    AddToBoth(kLabelLogEpoch, kLogEpoch, &log);
    bar->AddItem(epochMenu_);

    auto* const edit = new BMenu(Texts().Text(kLabelEdit));
    const char key = Texts().Key(kLabelUndoKey);
    edit->AddItem(new BMenuItem(Texts().Text(kLabelUndo), new BMessage(kUndo), key));
    edit->AddItem(new BMenuItem(Texts().Text(kLabelRedo), new BMessage(kRedo), key, B_SHIFT_KEY));
    bar->AddItem(edit);
    AddChild(bar);
    list_->SetContextMenu(static_cast<BPopUpMenu*>(listMenu_));
}

void EpochWindow::AddToBoth(int32 label, uint32 what, Items* items) {
    items->inBar = new BMenuItem(Texts().Text(label), new BMessage(what));
    items->inList = new BMenuItem(Texts().Text(label), new BMessage(what));
    epochMenu_->AddItem(items->inBar);
    listMenu_->AddItem(items->inList);
}

void EpochWindow::Items::SetEnabled(bool isEnabled) const {
    inBar->SetEnabled(isEnabled);
    inList->SetEnabled(isEnabled);
}

void EpochWindow::EnableItems() {
    const int64 selected = list_->Selection();
    const bool isAny = selected != ColumnListRow::kNoKey;
    restore_.SetEnabled(isAny && selected != epochs_.FocusKey());
    rename_.SetEnabled(isAny);
    delete_.SetEnabled(isAny && epochs_.Count() > 1);
}

void EpochWindow::SetHistory(const RunHistory* history) {
    const BAutolock lock(this);
    if (lock.IsLocked()) pictures_.SetHistory(history);
}

// --- Any thread ---

void EpochWindow::SetTitleFor(const char* simulation) {
    SetTitle((Texts().Label(kLabelEpochsOf) + simulation).c_str());
}

void EpochWindow::SetRunning(bool isRunning) {
    isRunning_ = isRunning;
    SetPulseRate(isRunning ? kRunPulse : 0);
    Changed(kTimeChanged);
}

void EpochWindow::Changed(int32 changes) {
    if ((changes & (kTreeChanges | kContentChanges)) == 0) return;
    changes_.Put(changes);
}

bool EpochWindow::CommitChanges() {
    if (IsHidden()) return false;
    const auto typed = list_->TakePendingRename();
    if (typed) Rename(typed->key, typed->text);
    return typed.has_value();
}

void EpochWindow::Rename(int64 key, const std::string& name) {
    ExecuteFiled(portal_, Named(kCommandNameEpoch, std::make_unique<SetEpochNameCommand>(
                                                       portal_, name, EpochList::EpochOf(key))));
}

AbEpoch* EpochWindow::EpochFor(const BMessage& message) const {
    void* wanted = nullptr;
    if (message.FindPointer(kEpochField, &wanted) != B_OK) return nullptr;
    const ReadGuard guard(portal_);
    for (EpochCursor cursor(root_); cursor.GetEpoch() != nullptr; cursor.Increment())
        if (cursor.GetEpoch() == wanted) return cursor.GetEpoch();
    return nullptr;
}

// --- Refreshing ---

void EpochWindow::Redisplay(int32 changes) {
    // Everything is read when it is shown.
    if (IsHidden()) return;
    const int64 before = epochs_.FocusKey();
    epochs_.SetRunning(isRunning_);
    bool isFocusOnly = false;
    {
        const ReadGuard guard(portal_);
        const AbEpoch* const focus = portal_->FocusEpoch();
        isFocusOnly = (changes & kTreeChanges) == 0 && epochs_.ReadFocus(focus);
        if (!isFocusOnly) epochs_.Read(root_, focus);
    }
    if (isFocusOnly) {
        list_->ChangeRow(epochs_.FocusRow());
        return;
    }
    list_->SetRows(epochs_.Rows());
    if (pictures_.IsIncomplete()) Changed(kEpochRenamed);
    FollowFocus(before);
    EnableItems();
}

// The selection goes with the focus if it was there.
void EpochWindow::FollowFocus(int64 before) {
    const int64 now = epochs_.FocusKey();
    if (now == before || now == ColumnListRow::kNoKey) return;
    if (list_->Selection() == before || list_->Selection() == ColumnListRow::kNoKey)
        list_->Select(now);
    else
        list_->Reveal(now);
}

// --- Messages ---

void EpochWindow::SendSelected(uint32 what) const {
    const int64 key = list_->Selection();
    const int32 index = epochs_.IndexOf(key);
    if (index < 0) return;
    BMessage message(what);
    message.AddInt32(kEpochIndexField, index);
    message.AddPointer(kEpochField, EpochList::EpochOf(key));
    SendToOwner(message);
}

void EpochWindow::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kRedisplay:
            return Redisplay(changes_.Take());
        case kSelected:
            return EnableItems();
        case kRestoreSelected:
            return SendSelected(kEditEpoch);
        case kDeleteSelected:
            return SendSelected(kDeleteEpoch);
        case kRenameSelected:
            return list_->StartRename();
        case kRenamed: {
            int64 key = ColumnListRow::kNoKey;
            std::string name;
            if (message->FindInt64(BColumnListView::kKeyField, &key) == B_OK &&
                message->FindString(BColumnListView::kTextField, &name) == B_OK)
                Rename(key, name);
            return;
        }
        case kLogEpoch:
            return SendToOwner(*message);
        default:
            SubWindow::MessageReceived(message);
    }
}

void EpochWindow::DispatchMessage(BMessage* message, BHandler* handler) {
    SubWindow::DispatchMessage(message, handler);
    // A run does not report its progress.
    if (message->what == B_PULSE && handler == this) Redisplay(kTimeChanged);
}

// --- The window ---

void EpochWindow::Show() {
    SubWindow::Show();
    Changed(kEverything);
}

bool EpochWindow::QuitRequested() {
    Hide();
    return false;
}

void EpochWindow::Quit() {
    portal_->RemoveObserver(this);
    SubWindow::Quit();
}
