// Adds mass systems to the focus epoch, all or none, and puts the first into focus. Owns them while
// they are not in the tree.
#pragma once

#include <vector>

#include "Model/Commands/FocusEpochCommand.h"

class SetSystemToCommand;

class NewSystemCommand final : public FocusEpochCommand {
public:
    NewSystemCommand(EpochPortal* portal, MassSystem* system, int64 parentID);
    // At least one.
    NewSystemCommand(EpochPortal* portal, std::vector<MassSystem*> systems, int64 parentID);
    ~NewSystemCommand() override;

protected:
    bool Apply() override;
    void Revert() override;

private:
    [[nodiscard]] bool HasAny() const;
    [[nodiscard]] std::vector<MassSystem*> FindAll() const;

    std::vector<MassSystem*> systems_;
    std::vector<int64> ids_;
    const int64 parentID_;
    std::unique_ptr<SetSystemToCommand> setSystem_;
    bool owns_ = true;
};
