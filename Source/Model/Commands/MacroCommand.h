// Several commands that are one step of the history; it owns them.
#pragma once

#include <memory>
#include <vector>

#include "Model/Commands/LCommand.h"
#include "Platform/Support/SupportDefs.h"

class MacroCommand final : public LCommand {
public:
    MacroCommand() = default;
    // `expected`: how many commands will be added.
    explicit MacroCommand(int32 expected);

    void AddCommand(std::unique_ptr<LCommand> command);

    [[nodiscard]] bool NestsTooDeeply() const override;
    void Execute() override;
    // Last to first.
    void Undo() override;

private:
    std::vector<std::unique_ptr<LCommand>> commands_;
};
