// A change that can be made, unmade and made again. Run through a LockingCommand, on any thread.
#pragma once

#include <memory>

#include "Resources/CommandNames.h"

// Of a command that nobody has named.
constexpr CommandName kUnnamedCommand{};

class LCommand {
public:
    LCommand() = default;
    virtual ~LCommand() = default;
    LCommand(const LCommand&) = delete;
    LCommand& operator=(const LCommand&) = delete;

    virtual void Execute() = 0;
    // Only after Execute.
    virtual void Undo() = 0;

    // Whether it would make an epoch that lies deeper in the tree than a document should go. Under
    // the read lock.
    [[nodiscard]] virtual bool NestsTooDeeply() const { return false; }

    // What the user sees it called; set by its maker.
    [[nodiscard]] CommandName Name() const { return name_; }
    void SetName(CommandName name) { name_ = name; }

private:
    CommandName name_ = kUnnamedCommand;
};

// The command with that name; null stays null.
template <typename Command>
[[nodiscard]] std::unique_ptr<Command> Named(CommandName name, std::unique_ptr<Command> command) {
    if (command) command->SetName(name);
    return command;
}
