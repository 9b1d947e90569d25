// Gives an epoch a name, the one that is in focus when it is first executed or the one given, while
// it is in the tree. Deliberately, undoing restores the old name as the epoch's own, even if
// it was inherited before.
#pragma once

#include <string>

#include "Model/Commands/LCommand.h"

class AbEpoch;
class EpochPortal;

class SetEpochNameCommand final : public LCommand {
public:
    SetEpochNameCommand(EpochPortal* portal, std::string newName);
    SetEpochNameCommand(EpochPortal* portal, std::string newName, std::string oldName);
    SetEpochNameCommand(EpochPortal* portal, std::string newName, AbEpoch* epoch);

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    std::string newName_;
    std::string oldName_;
    bool oldNameKnown_;
    AbEpoch* epoch_ = nullptr;  // null: the one in focus
    bool applied_ = false;
};
