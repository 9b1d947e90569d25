// Takes an epoch out of the tree; its children move up into its place. Owns the epoch while it is
// out of the tree.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Model/Commands/LCommand.h"
#include "Platform/Support/SupportDefs.h"

class AbEpoch;
class EpochPortal;
class SetEpochToCommand;

class DeleteEpochCommand final : public LCommand {
public:
    // Does nothing, then or when it is redone, for null, for the root of the tree, for an epoch
    // that is not in the tree when it is executed, and when no epoch would be left to look at.
    DeleteEpochCommand(EpochPortal* portal, AbEpoch* epoch);
    ~DeleteEpochCommand() override;

    // Whether it would do anything, if it were executed now.
    [[nodiscard]] bool CanExecute() const;
    void Execute() override;
    void Undo() override;

private:
    void MoveFocusAway();
    AbEpoch* NextFocus() const;

    EpochPortal* portal_;
    AbEpoch* epoch_;
    AbEpoch* parent_ = nullptr;
    int32 index_ = -1;
    std::unique_ptr<SetEpochToCommand> setEpoch_;
    std::vector<std::pair<AbEpoch*, bool>> nameFlags_;
    bool movedFocus_ = false;
    bool owns_ = false;
};
