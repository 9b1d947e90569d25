// The menu of the epochs that a display can compare its own with. Rules as for BMenu.
#pragma once

#include <string>
#include <vector>

#include "Platform/Interface/Handles/BMenu.h"

class AbEpoch;
class BMenuItem;
class Display;
class EpochPortal;
class RunHistory;
struct DisplayContext;

class CompareMenu : public BMenu {
public:
    // To the display: with pointer "Epoch", null for none; and what made the two differ.
    static constexpr uint32 kCompare = FourCC("cmpw");
    static constexpr uint32 kWhyDiffer = FourCC("whyd");
    static constexpr const char* kEpoch = "Epoch";

    // Neither is owned.
    CompareMenu(Display* display, const DisplayContext& context);

    // The epochs that there are; the history (null: none) knows which of them begin in a run. Takes
    // the model's read lock.
    void Read(EpochPortal* portal, const RunHistory* history);
    // What is compared with; null: nothing. The items stay: one may just have been chosen.
    void ShowOther(const AbEpoch* other);
    // What the menu calls it.
    [[nodiscard]] std::string NameOf(const AbEpoch* epoch) const;

private:
    struct Row {
        const AbEpoch* epoch;  // only compared
        std::string name;

        bool operator==(const Row&) const = default;
    };

    void Add(const char* label, const AbEpoch* epoch);
    void BuildItems();
    [[nodiscard]] std::vector<Row> ReadRows(EpochPortal* portal, const RunHistory* history) const;

    Display* const display_;
    const DisplayContext& context_;
    std::vector<Row> rows_;
    BMenuItem* why_ = nullptr;
};
