#include "Model/Commands/UndoChain.h"

#include <algorithm>
#include <iterator>

#include "Platform/Support/BAutolock.h"

UndoChain::UndoChain() : lock_("Undo chain lock") {}

UndoChain::~UndoChain() = default;

void UndoChain::AddExecuted(LCommand* command) {
    const BAutolock lock(lock_);
    if (savedCount_ && *savedCount_ > executedCount_) savedCount_.reset();
    executedCount_++;
    const auto undone = commands_.begin() + static_cast<std::ptrdiff_t>(position_);
    if (redoing_) std::move(undone, commands_.end(), std::back_inserter(dropped_));
    commands_.erase(undone, commands_.end());
    commands_.emplace_back(command);
    EnforceMaxSize();
    position_ = commands_.size();
}

void UndoChain::Undo() {
    const BAutolock lock(lock_);
    if (CanUndo()) {
        position_--;
        commands_[position_]->Undo();
        executedCount_--;
    }
}

void UndoChain::Redo() {
    const BAutolock lock(lock_);
    if (CanRedo()) {
        redoing_ = true;
        commands_[position_]->Execute();
        redoing_ = false;
        if (dropped_.empty()) {
            position_++;
            executedCount_++;
        }
        dropped_.clear();
    }
}

bool UndoChain::CanUndo() {
    const BAutolock lock(lock_);
    return position_ > 0;
}

bool UndoChain::CanRedo() {
    const BAutolock lock(lock_);
    return position_ < commands_.size();
}

int32 UndoChain::ExecutedCount() {
    const BAutolock lock(lock_);
    return executedCount_;
}

CommandName UndoChain::UndoName() {
    const BAutolock lock(lock_);
    return position_ > 0 ? commands_[position_ - 1]->Name() : kUnnamedCommand;
}

CommandName UndoChain::RedoName() {
    const BAutolock lock(lock_);
    return position_ < commands_.size() ? commands_[position_]->Name() : kUnnamedCommand;
}

void UndoChain::MarkSaved() {
    const BAutolock lock(lock_);
    savedCount_ = executedCount_;
}

void UndoChain::MarkUnsaved() {
    const BAutolock lock(lock_);
    savedCount_.reset();
}

bool UndoChain::IsSaved() {
    const BAutolock lock(lock_);
    return savedCount_ == executedCount_;
}

void UndoChain::Clear() {
    const BAutolock lock(lock_);
    commands_.clear();
    position_ = 0;
}

void UndoChain::SetMaxUndoLevel(int32 level) {
    const BAutolock lock(lock_);
    if (level > 0) maxUndoLevel_ = level;
    EnforceMaxSize();
    // Deliberately, the position keeps its index when old commands go, as long as there is such
    // one.
    position_ = std::min(position_, commands_.size());
}

int32 UndoChain::MaxUndoLevel() const {
    const BAutolock lock(lock_);
    return maxUndoLevel_;
}

bool UndoChain::WasDropped(const LCommand* command) {
    const BAutolock lock(lock_);
    const bool dropped =
        std::any_of(dropped_.begin(), dropped_.end(),
                    [command](const auto& candidate) { return candidate.get() == command; });
    return dropped;
}

void UndoChain::EnforceMaxSize() {
    const auto excess = std::ssize(commands_) - maxUndoLevel_;
    if (excess > 0) commands_.erase(commands_.begin(), commands_.begin() + excess);
}
