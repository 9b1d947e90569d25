// A list of rows in columns that may hang below each other. The user opens and closes rows, sorts
// by a column (a click on its title; the third one brings back the tree), resizes columns, renames
// rows in place (F2, or a slow second click), and invokes one by a double click or Enter. While the
// list is sorted it is plain: a tree sorted only among siblings answers no question. Rows are open
// until the user closes them. Selection, closed rows, the place scrolled to and a name that is
// being typed survive every change of the rows. Rules as for BView, but TakePendingRename needs no
// lock.
//
// Its messages go to the target, or to the window, and carry int64 "key"; kNoKey: no row.
#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Interface/Handles/BInvoker.h"
#include "Platform/Interface/Handles/BView.h"
#include "Platform/Support/SupportDefs.h"

class BBitmap;
class BPopUpMenu;

// One row of a column list, as both of its sides know it. A plain value.
struct ColumnListRow {
    static constexpr int64 kNoKey = -1;

    struct Cell {
        std::string text;
        // Sorts the rows instead of the text, unless it is no number.
        double number = std::numeric_limits<double>::quiet_NaN();
        // Beside the text, with two of its pixels for one of the screen's usual ones; null: none.
        std::shared_ptr<const BBitmap> picture = nullptr;
    };

    int64 key = kNoKey;     // names the row; unique in the list
    int64 parent = kNoKey;  // the key of an earlier row; none: a top-level row
    std::vector<Cell> cells;
    bool isEditable = false;  // its first cell can be renamed
    bool isMarked = false;    // stands out from the others
    bool isBranch = false;    // has the sign of a branch
    std::string tip;          // shown when the mouse rests on it
};

class BColumnListView : public BView, public BInvoker {
public:
    static constexpr const char* kKeyField = "key";
    static constexpr const char* kTextField = "text";  // of a rename: what was typed

    struct Column {
        std::string title;
        int32 width = 10;  // at first, in characters
        bool isRightAligned = false;
    };
    struct Rename {
        int64 key;
        std::string text;
    };

    // `invocation` is sent on a double click or Enter.
    BColumnListView(const char* name, std::vector<Column> columns, BMessage* invocation);

    // All rows, parents before their children; what differs from the rows before is changed.
    void SetRows(std::vector<ColumnListRow> rows);
    // Other contents of a row that is there, in its place.
    void ChangeRow(ColumnListRow row);

    [[nodiscard]] int64 Selection() const { return selection_; }
    // Selects the row, opens what is above it and scrolls to it. Sends nothing.
    void Select(int64 key);
    // The same without selecting.
    void Reveal(int64 key);

    // These take the message over; null: nothing is sent.
    void SetSelectionMessage(BMessage* message) { selectionMessage_.reset(message); }
    void SetDeletionMessage(BMessage* message) { deletionMessage_.reset(message); }
    void SetRenameMessage(BMessage* message) { renameMessage_.reset(message); }
    // Opens on a right click or the menu key, after the row under the mouse was selected. Takes it
    // over; once.
    void SetContextMenu(BPopUpMenu* menu);

    // Begins to rename the selected row.
    void StartRename();
    // The name that is being typed, if any, counts as typed and is not sent. Any thread.
    std::optional<Rename> TakePendingRename();

protected:
    void Changed(const BMessage& message) override;
    [[nodiscard]] BMessenger DefaultTarget() const override;

private:
    void Send(const BMessage* message, int64 key, const std::string* text = nullptr);

    int64 selection_ = ColumnListRow::kNoKey;
    std::unique_ptr<BMessage> selectionMessage_;
    std::unique_ptr<BMessage> deletionMessage_;
    std::unique_ptr<BMessage> renameMessage_;
};
