#include "Simulation/Epochs/EpochList.h"

#include <algorithm>

#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Systems/MassSystem.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Resources/EpochFeatures.h"
#include "Resources/EpochWindow.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// At first, in characters.
constexpr int32 kNameWidth = 18;
constexpr int32 kRunWidth = 4;
constexpr int32 kTimeWidth = 12;
constexpr int32 kLengthWidth = 18;  // with a picture
constexpr int32 kBodiesWidth = 6;
constexpr int32 kStateWidth = 11;

// More is for the window in which the time is edited.
constexpr int kTimeDigits = 8;

constexpr int32 kCircumstanceMade = 1;
constexpr int32 kLastNamedCircumstance = kCircumstanceMade + kLabelStateLogged - kLabelStateEdited;

}  // namespace

int64 EpochList::KeyOf(const AbEpoch* epoch) {
    return static_cast<int64>(reinterpret_cast<std::intptr_t>(epoch));
}

AbEpoch* EpochList::EpochOf(int64 key) {
    return reinterpret_cast<AbEpoch*>(static_cast<std::intptr_t>(key));
}

// --- Reading ---

void EpochList::Read(const AbEpoch* root, const AbEpoch* focus) {
    struct Unread {
        const AbEpoch* epoch;
        std::size_t parent;
    };
    std::vector<Unread> unread;
    const auto addChildren = [&unread](const AbEpoch& parent, std::size_t index) {
        for (int32 i = parent.CountChildren() - 1; i >= 0; i--)
            unread.push_back({parent.ChildAt(i), index});
    };
    if (pictures_ != nullptr) pictures_->BeginRound();
    entries_.clear();
    focus_ = kNone;
    addChildren(*root, kNone);
    while (!unread.empty()) {
        const auto [epoch, parent] = unread.back();
        unread.pop_back();
        Entry entry;
        entry.epoch = epoch;
        entry.parent = parent;
        // Asking the epoch would climb the whole chain, for each of its epochs.
        entry.name =
            epoch->NameFromParent() && parent != kNone ? entries_[parent].name : epoch->Name();
        entry.children = epoch->CountChildren();
        ReadContents(*epoch, epoch == focus, &entry);
        FindLine(&entry);
        if (epoch == focus) focus_ = entries_.size();
        entries_.push_back(std::move(entry));
        const std::size_t index = entries_.size() - 1;
        entries_[index].runs = RunsBefore(index) + (IsRun(index) ? 1 : 0);
        addChildren(*epoch, index);
    }
}

bool EpochList::ReadFocus(const AbEpoch* focus) {
    if (focus_ == kNone || entries_[focus_].epoch != focus) return false;
    ReadContents(*focus, true, &entries_[focus_]);
    return true;
}

void EpochList::ReadContents(const AbEpoch& epoch, bool isFocus, Entry* entry) const {
    entry->time = epoch.Time();
    entry->timeUval = epoch.TimeUval();
    entry->bodies = epoch.RootSystem() == nullptr ? 0 : epoch.RootSystem()->CountBodies();
    entry->circumstance = epoch.Circumstance();
    entry->isWriteable = epoch.Writeable();
    // One that goes on has a picture when it has ended.
    const bool goesOn = isRunning_ && isFocus;
    if (pictures_ != nullptr && !goesOn) entry->picture = pictures_->PictureOf(epoch);
}

int32 EpochList::RunsBefore(std::size_t index) const {
    const std::size_t parent = entries_[index].parent;
    return parent == kNone ? 0 : entries_[parent].runs;
}

bool EpochList::IsBranch(const Entry& entry) const {
    return entry.parent != kNone && entries_[entry.parent].children > 1;
}

void EpochList::FindLine(Entry* entry) const {
    if (entry->parent == kNone) return;
    const Entry& parent = entries_[entry->parent];
    const bool parentBeginsLine = parent.parent == kNone || IsBranch(parent);
    entry->line = parentBeginsLine ? entry->parent : parent.line;
}

// --- Rows ---

std::vector<BColumnListView::Column> EpochList::Columns() const {
    return {{texts_->Label(kTextNameColumn), kNameWidth, false},
            {texts_->Label(kTextRunColumn), kRunWidth, true},
            {texts_->Label(kTextTimeColumn), kTimeWidth, true},
            {texts_->Label(kTextLengthColumn), kLengthWidth, true},
            {texts_->Label(kTextBodiesColumn), kBodiesWidth, true},
            {texts_->Label(kTextStateColumn), kStateWidth, false}};
}

std::vector<ColumnListRow> EpochList::Rows() const {
    std::vector<ColumnListRow> rows;
    rows.reserve(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); i++)
        rows.push_back(RowOf(i));
    return rows;
}

int64 EpochList::FocusKey() const {
    return focus_ == kNone ? ColumnListRow::kNoKey : KeyOf(entries_[focus_].epoch);
}

int32 EpochList::IndexOf(int64 key) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [key](const Entry& entry) {
        return KeyOf(entry.epoch) == key;
    });
    return found == entries_.end() ? -1 : static_cast<int32>(found - entries_.begin());
}

ColumnListRow EpochList::RowOf(std::size_t index) const {
    const Entry& entry = entries_[index];
    ColumnListRow row;
    row.key = KeyOf(entry.epoch);
    if (entry.line != kNone) row.parent = KeyOf(entries_[entry.line].epoch);
    row.isEditable = true;
    row.isMarked = index == focus_;
    row.isBranch = IsBranch(entry);
    row.tip = texts_->Label(entry.isWriteable ? kTextWriteableTip : kTextReadOnlyTip);
    ColumnListRow::Cell run;
    ColumnListRow::Cell length;
    if (IsRun(index)) {
        const int32 number = RunsBefore(index) + 1;
        run = {std::to_string(number), static_cast<double>(number)};
        const double start = entry.parent == kNone ? 0.0 : entries_[entry.parent].time;
        length = {TimeText(entry.time - start, entry), entry.time - start};
    }
    length.picture = entry.picture;
    // All rows are of one height.
    if (length.picture == nullptr && pictures_ != nullptr && pictures_->AreThere())
        length.picture = RunPictures::Blank();
    const std::string& state = texts_->Label(StateOf(index));
    row.cells = {{entry.name},
                 std::move(run),
                 {TimeText(entry.time, entry), entry.time},
                 std::move(length),
                 {std::to_string(entry.bodies), static_cast<double>(entry.bodies)},
                 {row.isMarked ? FillIn(texts_->Label(kTextCurrentState), {state}) : state}};
    return row;
}

std::string EpochList::TimeText(double time, const Entry& entry) const {
    return FillIn(texts_->Label(kTextTime), {print_double(time / entry.timeUval, kTimeDigits),
                                             timeUnits_->Abbreviation(entry.timeUval)});
}

bool EpochList::IsRun(std::size_t index) const {
    const int32 state = StateOf(index);
    return state == kLabelStatePaused || state == kLabelStateGo;
}

// The circumstance where it says more than that an epoch was made, as it does for all that this
// program makes; otherwise what the tree itself tells.
int32 EpochList::StateOf(std::size_t index) const {
    const Entry& entry = entries_[index];
    if (index == focus_ && isRunning_) return kLabelStateGo;
    if (entry.circumstance > kCircumstanceMade && entry.circumstance <= kLastNamedCircumstance)
        return kLabelStateEdited + entry.circumstance - kCircumstanceMade;
    if (entry.isWriteable) return kLabelStateEdited;
    // A record at another time than the one it was derived from is where a run paused.
    const bool isRun = entry.parent != kNone && entries_[entry.parent].time != entry.time;
    return isRun ? kLabelStatePaused : kLabelStateLogged;
}
