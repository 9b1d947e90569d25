// Takes a mass system out of the focus epoch. Owns the system while it is out of the tree.
#pragma once

#include "Model/Commands/FocusEpochCommand.h"
#include "Model/Systems/MassSystem.h"

class SetSystemToCommand;

class DeleteSystemCommand final : public FocusEpochCommand {
public:
    // `nextFocusID`: the system to put into focus if the deleted one (or a part of it) has it.
    DeleteSystemCommand(EpochPortal* portal, int64 systemID, int64 nextFocusID);
    ~DeleteSystemCommand() override;

protected:
    bool Apply() override;
    void Revert() override;

private:
    bool HoldsFocus() const;

    int64 systemID_;
    int64 nextFocusID_;
    MassSystem* system_ = nullptr;
    int64 parentID_ = kNoSystemID;
    std::unique_ptr<SetSystemToCommand> setSystem_;
    bool movedFocus_ = false;
    bool owns_ = false;
};
