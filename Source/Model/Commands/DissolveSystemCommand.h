// Takes a composite system out of the focus epoch and leaves its members in its place. Owns the
// composite while it is out of the tree.
#pragma once

#include <memory>
#include <vector>

#include "Model/Commands/FocusEpochCommand.h"
#include "Model/Systems/MassSystem.h"

class SetSystemToCommand;

class DissolveSystemCommand final : public FocusEpochCommand {
public:
    // Does nothing for a body, a system that is not there, and the root system.
    DissolveSystemCommand(EpochPortal* portal, int64 systemID);
    ~DissolveSystemCommand() override;

protected:
    bool Apply() override;
    void Revert() override;

private:
    const int64 systemID_;
    std::vector<int64> memberIDs_;
    int64 parentID_ = kNoSystemID;
    std::unique_ptr<MassSystem> ownedGroup_;
    std::unique_ptr<SetSystemToCommand> setSystem_;
};
