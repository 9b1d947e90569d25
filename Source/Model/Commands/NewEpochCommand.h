// Copies the focus epoch, puts the copy below it and into focus, and makes the old one read-only.
#pragma once

#include <memory>

#include "Model/Commands/LCommand.h"

class AddEpochCommand;
class EpochPortal;
class SetEpochToCommand;

class NewEpochCommand final : public LCommand {
public:
    explicit NewEpochCommand(EpochPortal* portal);
    ~NewEpochCommand() override;

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    std::unique_ptr<AddEpochCommand> add_;
    std::unique_ptr<SetEpochToCommand> setEpoch_;
    bool wasWriteable_ = true;
};
