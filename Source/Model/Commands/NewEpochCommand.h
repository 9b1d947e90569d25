// Copies the focus epoch, puts the copy below it and into focus, and makes the old one read-only.
#pragma once

#include <memory>

#include "Model/Commands/LCommand.h"
#include "Platform/Application/BMessage.h"

class AddEpochCommand;
class EpochPortal;
class SetEpochToCommand;

class NewEpochCommand final : public LCommand {
public:
    // So many epochs below one another are made, the top-level one counted. A document nests its
    // records as the tree does; what else it nests has as much room again.
    static constexpr int32 kMaxDepth = BMessage::kMaxNesting / 2;

    explicit NewEpochCommand(EpochPortal* portal);
    ~NewEpochCommand() override;

    [[nodiscard]] bool NestsTooDeeply() const override;
    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    std::unique_ptr<AddEpochCommand> add_;
    std::unique_ptr<SetEpochToCommand> setEpoch_;
    bool wasWriteable_ = true;
};
