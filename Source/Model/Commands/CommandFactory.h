// What stands between an entry control (or a command line) and the model: a factory knows one
// quantity, says what of it is to be shown, and turns what the user entered into an undoable
// command. A factory holds no state of the document; it is used by the thread that owns the portal,
// which holds the portal's read lock while it asks for Current or MakeCommand, and runs the command
// through a LockingCommand afterwards (CommitEntry does all of it).
#pragma once

#include <memory>
#include <string>

#include "Model/Commands/LCommand.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Units/DimValue.h"

template <typename Value>
class CommandFactory {
public:
    virtual ~CommandFactory() = default;

    // The value in force, in SI units and with the unit it is shown in.
    virtual Value Current(const EpochPortal& portal) const = 0;
    // Null when the value is the one in force already, or cannot be taken.
    virtual std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal,
                                                  const Value& value) const = 0;
    // What it sets is part of what an epoch records.
    [[nodiscard]] virtual bool EditsEpoch() const { return true; }
};

using StringCommandFactory = CommandFactory<std::string>;
using QuantityCommandFactory = CommandFactory<DimValue>;
using VectorCommandFactory = CommandFactory<DimVector>;
using ColorCommandFactory = CommandFactory<rgb_color>;
using SwitchCommandFactory = CommandFactory<bool>;
using IntCommandFactory = CommandFactory<int32>;
using NumberCommandFactory = CommandFactory<double>;

// Files and runs the command; false for null, and, after all observers were told, for one that
// would nest epochs too deeply. No lock of the document may be held.
bool ExecuteFiled(EpochPortal* portal, std::unique_ptr<LCommand> command);

// Makes the entered value the one in force, as one undoable step; false when nothing was to be
// done.
template <typename Value>
bool CommitEntry(EpochPortal* portal, const CommandFactory<Value>& factory, const Value& value) {
    if (factory.EditsEpoch() && !portal->PrepareForEdit()) return false;
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal);
        command = factory.MakeCommand(portal, value);
    }
    return ExecuteFiled(portal, std::move(command));
}
