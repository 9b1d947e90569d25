#include "Model/Commands/DeleteEpochCommand.h"

#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

DeleteEpochCommand::DeleteEpochCommand(EpochPortal* portal, AbEpoch* epoch)
    : portal_(portal), epoch_(epoch) {}

DeleteEpochCommand::~DeleteEpochCommand() {
    if (owns_) delete epoch_;
}

bool DeleteEpochCommand::CanExecute() const {
    return epoch_ && portal_->HasEpoch(epoch_) && epoch_->Parent() &&
           (portal_->FocusEpoch() != epoch_ || NextFocus());
}

void DeleteEpochCommand::Execute() {
    if (!CanExecute()) {
        // For good: what is redone later may stand in this epoch.
        epoch_ = nullptr;
        return;
    }
    parent_ = epoch_->Parent();
    index_ = parent_->IndexOfChild(epoch_);
    movedFocus_ = portal_->FocusEpoch() == epoch_;
    if (movedFocus_) MoveFocusAway();

    const bool ownName = !epoch_->NameFromParent();
    const int32 count = epoch_->CountChildren();
    nameFlags_.clear();
    for (int32 i = 0; i < count; i++) {
        AbEpoch* child = epoch_->ChildAt(i);
        nameFlags_.emplace_back(child, child->NameFromParent());
        // Keeps the name that it shows.
        if (ownName) child->SetNameFromParent(false);
    }
    parent_->AdoptChildren(epoch_, 0, count, epoch_);
    epoch_->RemoveChildren(0, count);
    parent_->RemoveChild(epoch_);
    epoch_->SetParent(nullptr);
    owns_ = true;
    portal_->TellObservers(kEpochRemoved);
}

void DeleteEpochCommand::Undo() {
    if (!owns_) return;
    const auto count = static_cast<int32>(nameFlags_.size());
    epoch_->AdoptChildren(parent_, index_, index_ + count, nullptr);
    parent_->RemoveChildren(index_, index_ + count);
    if (parent_->AddChild(epoch_, index_) == B_OK) owns_ = false;
    for (const auto& [child, fromParent] : nameFlags_)
        child->SetNameFromParent(fromParent);
    portal_->TellObservers(kEpochAdded);
    if (movedFocus_) setEpoch_->Undo();
}

void DeleteEpochCommand::MoveFocusAway() {
    setEpoch_ = std::make_unique<SetEpochToCommand>(portal_, NextFocus());
    setEpoch_->Execute();
}

AbEpoch* DeleteEpochCommand::NextFocus() const {
    // The root of the tree holds nothing to look at.
    if (epoch_->Parent() != portal_->RootEpoch()) return epoch_->Parent();
    EpochCursor cursor(epoch_);
    cursor.Increment();
    return cursor.GetEpoch();
}
