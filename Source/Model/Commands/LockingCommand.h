// Runs a command under the locks: commits pending edits, takes the undo chain's lock and the
// model's write lock (always in this order), executes, and files itself in the undo chain. Made on
// the heap; from its first Execute it belongs to the chain, or deletes itself when it is not to be
// filed.
#pragma once

#include <memory>

#include "Model/Commands/LCommand.h"

class EpochPortal;

class LockingCommand final : public LCommand {
public:
    // Takes the command over.
    LockingCommand(LCommand* command, EpochPortal* portal, bool addToChain);

    // No lock of the document may be held by the caller.
    void Execute() override;
    // Called by the undo chain, which holds its own lock.
    void Undo() override;

private:
    std::unique_ptr<LCommand> command_;
    EpochPortal* portal_;
    bool addToChain_;
    const bool keep_;
};
