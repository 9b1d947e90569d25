#include "Model/Commands/MacroCommand.h"

#include <algorithm>

MacroCommand::MacroCommand(int32 expected) {
    if (expected > 0) commands_.reserve(static_cast<std::size_t>(expected));
}

void MacroCommand::AddCommand(std::unique_ptr<LCommand> command) {
    commands_.push_back(std::move(command));
}

bool MacroCommand::NestsTooDeeply() const {
    return std::ranges::any_of(commands_,
                               [](const auto& command) { return command->NestsTooDeeply(); });
}

void MacroCommand::Execute() {
    for (const auto& command : commands_)
        command->Execute();
}

void MacroCommand::Undo() {
    for (std::size_t i = commands_.size(); i-- > 0;)
        commands_[i]->Undo();
}
