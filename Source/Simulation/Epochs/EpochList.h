// The epochs of a document as rows of a list. Reading takes what is needed from the model, and is
// all that is done under its read lock; the rest works on what was read. Owned by the epoch window,
// used on its thread.
//
// Every run adds an epoch below the one before, so most of a tree is long chains of only children.
// A chain is shown as a line: its first epoch, and the others beneath that one, all at one depth.
// An epoch with several children ends its line, and begins one with each of them; these branches
// follow it, at the same depth, and have a sign. So rows are indented by branches and not by runs,
// a line that is of no interest closes to a single row, and from top to bottom the rows still are
// in visiting order.
//
// The runs of a line have one name; they are told apart by their number, which counts the runs on
// the way from the beginning, and by their length. So a number stays what it is whatever else is
// run or deleted; those of two branches may be the same.
#pragma once

#include <string>
#include <vector>

#include "Platform/Interface/Lists/BColumnListView.h"
#include "Simulation/Epochs/RunPictures.h"

class AbEpoch;
class InterfaceTexts;
class UnitTable;

class EpochList {
public:
    // Both must outlive the list.
    EpochList(const InterfaceTexts* texts, const UnitTable* timeUnits)
        : texts_(texts), timeUnits_(timeUnits) {}

    // Pictures of the runs. Null: none. Not owned.
    void SetPictures(RunPictures* pictures) { pictures_ = pictures; }

    // Reads all epochs below `root`, or only the one in focus: false if that is not the one that
    // it was before. Under the read lock.
    void Read(const AbEpoch* root, const AbEpoch* focus);
    [[nodiscard]] bool ReadFocus(const AbEpoch* focus);
    void SetRunning(bool isRunning) { isRunning_ = isRunning; }

    [[nodiscard]] std::vector<BColumnListView::Column> Columns() const;
    // All rows in visiting order, or the focus epoch's, which there must be.
    [[nodiscard]] std::vector<ColumnListRow> Rows() const;
    [[nodiscard]] ColumnListRow FocusRow() const { return RowOf(focus_); }
    // The focus epoch's; kNoKey for none.
    [[nodiscard]] int64 FocusKey() const;
    // The position in visiting order; -1 if there is none.
    [[nodiscard]] int32 IndexOf(int64 key) const;
    [[nodiscard]] std::size_t Count() const { return entries_.size(); }

    // A row's key names its epoch, which may have gone since.
    [[nodiscard]] static int64 KeyOf(const AbEpoch* epoch);
    [[nodiscard]] static AbEpoch* EpochOf(int64 key);

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    struct Entry {
        const AbEpoch* epoch = nullptr;  // not looked into: it may have gone
        std::size_t parent = kNone;      // of a top-level epoch: none
        std::size_t line = kNone;        // the epoch that it is shown below, if any
        std::string name;
        double time = 0.0;  // s
        double timeUval = 1.0;
        int32 children = 0;
        int32 bodies = 0;
        int32 runs = 0;  // on the way from the beginning, this one included
        int32 circumstance = 0;
        bool isWriteable = false;
        RunPictures::Picture picture;
    };
    void ReadContents(const AbEpoch& epoch, bool isFocus, Entry* entry) const;
    [[nodiscard]] int32 RunsBefore(std::size_t index) const;
    [[nodiscard]] bool IsBranch(const Entry& entry) const;
    void FindLine(Entry* entry) const;
    [[nodiscard]] ColumnListRow RowOf(std::size_t index) const;
    [[nodiscard]] int32 StateOf(std::size_t index) const;
    [[nodiscard]] bool IsRun(std::size_t index) const;
    [[nodiscard]] std::string TimeText(double time, const Entry& entry) const;

    const InterfaceTexts* const texts_;
    const UnitTable* const timeUnits_;
    RunPictures* pictures_ = nullptr;
    std::vector<Entry> entries_;  // in visiting order
    std::size_t focus_ = kNone;
    bool isRunning_ = false;
};
