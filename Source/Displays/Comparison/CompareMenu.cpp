#include "Displays/Comparison/CompareMenu.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuItem.h"
#include "Resources/Views.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/RunHistory.h"

namespace {

// Only the last ones are offered.
constexpr std::size_t kMaxEpochs = 40;
constexpr int kTimeDigits = 6;

}  // namespace

CompareMenu::CompareMenu(Display* display, const DisplayContext& context)
    : BMenu(context.texts->Text(kLabelCompare)), display_(display), context_(context) {
    BuildItems();
}

void CompareMenu::Add(const char* label, const AbEpoch* epoch) {
    auto* const message = new BMessage(kCompare);
    message->AddPointer(kEpoch, epoch);
    auto* const item = new BMenuItem(label, message);
    item->SetTarget(display_);
    AddItem(item);
}

void CompareMenu::Read(EpochPortal* portal, const RunHistory* history) {
    std::vector<Row> rows = ReadRows(portal, history);
    if (rows.size() > kMaxEpochs)
        rows.erase(rows.begin(), rows.end() - static_cast<std::ptrdiff_t>(kMaxEpochs));
    if (rows == rows_) return;
    rows_ = std::move(rows);
    BuildItems();
}

// The runs of a line have one name: their number, counted from the beginning, tells them apart. An
// epoch that no run led to has none.
std::vector<CompareMenu::Row> CompareMenu::ReadRows(EpochPortal* portal,
                                                    const RunHistory* history) const {
    std::vector<Row> rows;
    struct Known {
        std::string name;
        int32 runs = 0;
    };
    std::unordered_map<const AbEpoch*, Known> known;
    const ReadGuard guard(portal);
    const AbEpoch* const root = portal->RootEpoch();
    for (EpochCursor cursor(portal->RootEpoch()); cursor.GetEpoch() != nullptr;
         cursor.Increment()) {
        const AbEpoch& epoch = *cursor.GetEpoch();
        if (&epoch == root) continue;
        const AbEpoch* const parent = epoch.Parent();
        const bool hasParent = parent != nullptr && parent != root;
        Known now = hasParent ? known[parent] : Known{};
        if (!hasParent || !epoch.NameFromParent()) now.name = epoch.Name();
        const auto way = history != nullptr ? history->WayTo(epoch) : std::nullopt;
        const bool isRun =
            hasParent && parent->Time() != epoch.Time() && (!way || way->run == &epoch);
        if (isRun) now.runs++;
        known[&epoch] = now;
        if (&epoch == portal->FocusEpoch()) continue;
        const std::string time = print_double(epoch.Time() / epoch.TimeUval(), kTimeDigits) + ' ' +
                                 context_.timeUnits->Abbreviation(epoch.TimeUval());
        rows.push_back({&epoch, !isRun
                                    ? FillIn(context_.texts->Label(kTextEpochAt), {now.name, time})
                                    : FillIn(context_.texts->Label(kTextRunOfEpoch),
                                             {now.name, std::to_string(now.runs), time})});
    }
    return rows;
}

std::string CompareMenu::NameOf(const AbEpoch* epoch) const {
    const auto row = std::ranges::find(rows_, epoch, &Row::epoch);
    return row == rows_.end() ? std::string() : row->name;
}

void CompareMenu::BuildItems() {
    RemoveItems();
    Add(context_.texts->Text(kLabelCompareNothing), nullptr);
    AddSeparatorItem();
    for (const Row& row : rows_)
        Add(row.name.c_str(), row.epoch);
    AddSeparatorItem();
    why_ = new BMenuItem(context_.texts->Text(kLabelWhyDiffer), new BMessage(kWhyDiffer));
    why_->SetTarget(display_);
    AddItem(why_);
    ShowOther(nullptr);
}

void CompareMenu::ShowOther(const AbEpoch* other) {
    why_->SetEnabled(other != nullptr);
    for (int32 i = 0; i < CountItems(); i++) {
        BMenuItem* const item = ItemAt(i);
        void* epoch = nullptr;
        if (item->Message() != nullptr && item->Message()->FindPointer(kEpoch, &epoch) == B_OK)
            item->SetMarked(epoch == other);
    }
}
