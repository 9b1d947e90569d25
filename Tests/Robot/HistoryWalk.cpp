#include "Tests/Robot/HistoryWalk.h"

#include <sstream>

#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/EpochPortal.h"
#include "Tests/Robot/DocumentState.h"

HistoryWalk::HistoryWalk(EpochPortal* portal, Step undo, Step redo)
    : portal_(portal), undo_(std::move(undo)), redo_(std::move(redo)) {}

std::string HistoryWalk::Walk() {
    std::string difference = LookAhead();
    GoBack();
    if (difference.empty()) difference = GoForward();
    if (!difference.empty() || !hasCopied_) return difference;

    const std::string start = Start();
    GoBack();
    difference = FirstDifference(start, Start());
    return difference.empty() ? GoForward() : "undone to the start again: " + difference;
}

// What was undone before the walk, redone and undone.
std::string HistoryWalk::LookAhead() {
    const State before = Now();
    int count = 0;
    for (; portal_->GetUndoChain()->CanRedo(); count++)
        redo_();
    for (int i = 0; i < count; i++)
        undo_();
    const std::string difference = FirstDifference(before.text, Now().text);
    return difference.empty() ? ""
                              : std::to_string(count) + " steps redone and undone: " + difference;
}

void HistoryWalk::GoBack() {
    states_ = {Now()};
    while (portal_->GetUndoChain()->CanUndo()) {
        undo_();
        states_.push_back(Now());
    }
    stepsAtStart_ = portal_->GetUndoChain()->ExecutedCount();
    firstEpoch_ = portal_->RootEpoch()->ChildAt(0);
}

std::string HistoryWalk::GoForward() {
    const bool isFirstTime = !hasCopied_;
    for (std::size_t depth = states_.size() - 1; depth > 0; depth--) {
        const AbEpoch* const focus = portal_->FocusEpoch();
        const AbEpoch* const record = focus->Writeable() ? nullptr : focus;
        const CommandName step = portal_->GetUndoChain()->RedoName();
        redo_();
        if (isFirstTime && hasCopied_) continue;
        const std::string difference = FirstDifference(states_[depth - 1].text, Now().text);
        if (difference.empty()) continue;
        hasCopied_ = isFirstTime && IsCopied(record, states_[depth], states_[depth - 1]);
        if (hasCopied_) continue;
        std::ostringstream text;
        text << "redone until " << depth - 1 << " of " << states_.size() - 1 << " steps are left ("
             << step << "): " << difference;
        return text.str();
    }
    return {};
}

HistoryWalk::State HistoryWalk::Now() const {
    int epochs = 0;
    for (EpochCursor cursor(portal_->RootEpoch()); cursor.GetEpoch() != nullptr; cursor.Increment())
        epochs++;
    return {DocumentState(portal_), epochs};
}

bool HistoryWalk::IsCopied(const AbEpoch* record, const State& from, const State& to) const {
    return record != nullptr && portal_->FocusEpoch()->Parent() == record &&
           to.epochs == from.epochs && Now().epochs == to.epochs + 1;
}
