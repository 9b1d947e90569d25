// Gives the focus epoch a name. Deliberately, undoing restores the old name as the epoch's own,
// even if it was inherited before.
#pragma once

#include <string>

#include "LCommand.h"

class AbEpoch;
class EpochPortal;

class SetEpochNameCommand final : public LCommand {
public:
    SetEpochNameCommand(EpochPortal* portal, std::string newName);
    SetEpochNameCommand(EpochPortal* portal, std::string newName, std::string oldName);

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    std::string newName_;
    std::string oldName_;
    bool oldNameKnown_;
    AbEpoch* epoch_ = nullptr;
};
