#include "Model/Commands/UndoChain.h"

#include <algorithm>
#include <iterator>

UndoChain::UndoChain() : lock_("Undo chain lock") {}

UndoChain::~UndoChain() = default;

void UndoChain::AddExecuted(LCommand* command) {
    lock_.Lock();
    if (savedCount_ && *savedCount_ > executedCount_) savedCount_.reset();
    executedCount_++;
    const auto undone = commands_.begin() + static_cast<std::ptrdiff_t>(position_);
    if (redoing_) std::move(undone, commands_.end(), std::back_inserter(dropped_));
    commands_.erase(undone, commands_.end());
    commands_.emplace_back(command);
    EnforceMaxSize();
    position_ = commands_.size();
    lock_.Unlock();
}

void UndoChain::Undo() {
    lock_.Lock();
    if (CanUndo()) {
        position_--;
        commands_[position_]->Undo();
        executedCount_--;
    }
    lock_.Unlock();
}

void UndoChain::Redo() {
    lock_.Lock();
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
    lock_.Unlock();
}

bool UndoChain::CanUndo() {
    lock_.Lock();
    const bool can = position_ > 0;
    lock_.Unlock();
    return can;
}

bool UndoChain::CanRedo() {
    lock_.Lock();
    const bool can = position_ < commands_.size();
    lock_.Unlock();
    return can;
}

int32 UndoChain::ExecutedCount() {
    lock_.Lock();
    const int32 count = executedCount_;
    lock_.Unlock();
    return count;
}

CommandName UndoChain::UndoName() {
    lock_.Lock();
    const CommandName name = position_ > 0 ? commands_[position_ - 1]->Name() : kUnnamedCommand;
    lock_.Unlock();
    return name;
}

CommandName UndoChain::RedoName() {
    lock_.Lock();
    const CommandName name =
        position_ < commands_.size() ? commands_[position_]->Name() : kUnnamedCommand;
    lock_.Unlock();
    return name;
}

void UndoChain::MarkSaved() {
    lock_.Lock();
    savedCount_ = executedCount_;
    lock_.Unlock();
}

void UndoChain::MarkUnsaved() {
    lock_.Lock();
    savedCount_.reset();
    lock_.Unlock();
}

bool UndoChain::IsSaved() {
    lock_.Lock();
    const bool isSaved = savedCount_ == executedCount_;
    lock_.Unlock();
    return isSaved;
}

void UndoChain::Clear() {
    lock_.Lock();
    commands_.clear();
    position_ = 0;
    lock_.Unlock();
}

void UndoChain::SetMaxUndoLevel(int32 level) {
    lock_.Lock();
    if (level > 0) maxUndoLevel_ = level;
    EnforceMaxSize();
    // Deliberately, the position keeps its index when old commands go, as long as there is such
    // one.
    position_ = std::min(position_, commands_.size());
    lock_.Unlock();
}

int32 UndoChain::MaxUndoLevel() const {
    lock_.Lock();
    const int32 level = maxUndoLevel_;
    lock_.Unlock();
    return level;
}

bool UndoChain::WasDropped(const LCommand* command) {
    lock_.Lock();
    const bool dropped =
        std::any_of(dropped_.begin(), dropped_.end(),
                    [command](const auto& candidate) { return candidate.get() == command; });
    lock_.Unlock();
    return dropped;
}

void UndoChain::EnforceMaxSize() {
    const auto excess = std::ssize(commands_) - maxUndoLevel_;
    if (excess > 0) commands_.erase(commands_.begin(), commands_.begin() + excess);
}
