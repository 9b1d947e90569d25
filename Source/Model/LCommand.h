// A change that can be made, unmade and made again. Run through a LockingCommand, on any thread.
#pragma once

class LCommand {
public:
    LCommand() = default;
    virtual ~LCommand() = default;
    LCommand(const LCommand&) = delete;
    LCommand& operator=(const LCommand&) = delete;

    virtual void Execute() = 0;
    // Only after Execute.
    virtual void Undo() = 0;
};
