#include "Platform/Interface/Lists/BColumnListView.h"

#include <utility>

#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Lists/ColumnListPart.h"

BColumnListView::BColumnListView(const char* name, std::vector<Column> columns,
                                 BMessage* invocation)
    : BView(name, std::make_shared<ColumnListPart>(std::move(columns))), BInvoker(invocation) {}

void BColumnListView::SetRows(std::vector<ColumnListRow> rows) {
    // What is queued must be copyable; the rows need not be copied for it.
    auto taken = std::make_shared<std::vector<ColumnListRow>>(std::move(rows));
    ChangePart<ColumnListPart>(Part(),
                               [taken](ColumnListPart& part) { part.SetRows(std::move(*taken)); });
}

void BColumnListView::ChangeRow(ColumnListRow row) {
    ChangePart<ColumnListPart>(
        Part(), [row = std::move(row)](ColumnListPart& part) { part.ChangeRow(row); });
}

void BColumnListView::Select(int64 key) {
    selection_ = key;
    ChangePart<ColumnListPart>(Part(), [key](ColumnListPart& part) { part.Select(key); });
}

void BColumnListView::Reveal(int64 key) {
    ChangePart<ColumnListPart>(Part(), [key](ColumnListPart& part) { part.Reveal(key); });
}

void BColumnListView::SetContextMenu(BPopUpMenu* menu) {
    Adopt(menu);
    ChangePart<ColumnListPart>(Part(),
                               [menu = menu->Part()](ColumnListPart& part) { part.SetMenu(menu); });
}

void BColumnListView::StartRename() {
    ChangePart<ColumnListPart>(Part(), [](ColumnListPart& part) { part.StartRename(); });
}

std::optional<BColumnListView::Rename> BColumnListView::TakePendingRename() {
    return WindowServer::Ask([part = Part()]() -> std::optional<Rename> {
        if (part->Widget() == nullptr) return std::nullopt;
        return static_cast<ColumnListPart&>(*part).TakeRename();
    });
}

BMessenger BColumnListView::DefaultTarget() const {
    return Window() == nullptr ? BMessenger{} : BMessenger(Window());
}

void BColumnListView::Changed(const BMessage& message) {
    int64 key = ColumnListRow::kNoKey;
    if (message.FindInt64(kListSelected, &key) == B_OK) {
        selection_ = key;
        bool isSilent = false;
        message.FindBool(kListSilent, &isSilent);
        if (!isSilent) Send(selectionMessage_.get(), key);
    } else if (message.FindInt64(kListInvoked, &key) == B_OK) {
        Send(Message(), key);
    } else if (message.FindInt64(kListDeleted, &key) == B_OK) {
        Send(deletionMessage_.get(), key);
    } else if (message.FindInt64(kListRenamed, &key) == B_OK) {
        std::string text;
        message.FindString(kTextField, &text);
        Send(renameMessage_.get(), key, &text);
    }
}

void BColumnListView::Send(const BMessage* message, int64 key, const std::string* text) {
    if (message == nullptr) return;
    BMessage copy(*message);
    copy.AddInt64(kKeyField, key);
    if (text != nullptr) copy.AddString(kTextField, *text);
    Invoke(&copy);
}
