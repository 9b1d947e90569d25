// Adds a mass system to the focus epoch and puts it into focus. Owns the system while it is not in
// the tree.
#pragma once

#include "Model/Commands/FocusEpochCommand.h"

class SetSystemToCommand;

class NewSystemCommand final : public FocusEpochCommand {
public:
    NewSystemCommand(EpochPortal* portal, MassSystem* system, int64 parentID);
    ~NewSystemCommand() override;

protected:
    bool Apply() override;
    void Revert() override;

private:
    MassSystem* system_;
    const int64 systemID_;
    const int64 parentID_;
    std::unique_ptr<SetSystemToCommand> setSystem_;
    bool owns_ = true;
};
