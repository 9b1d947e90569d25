#include "Simulation/Trust/AddRunCommand.h"

#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"

AddRunCommand::AddRunCommand(EpochPortal* portal, AbEpoch* start, std::unique_ptr<Epoch> run)
    : portal_(portal), start_(start), owned_(std::move(run)), run_(owned_.get()) {}

void AddRunCommand::Execute() {
    if (!portal_->HasEpoch(start_) || start_->AddChild(run_) != B_OK) return;
    static_cast<void>(owned_.release());
    portal_->TellObservers(kEpochAdded);
}

void AddRunCommand::Undo() {
    if (owned_ != nullptr) return;
    start_->RemoveChild(run_);
    owned_.reset(run_);
    portal_->TellObservers(kEpochRemoved);
}
