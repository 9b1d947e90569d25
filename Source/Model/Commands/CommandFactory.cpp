#include "Model/Commands/CommandFactory.h"

#include "Model/Commands/LockingCommand.h"
#include "Model/Sharing/ChangeFlags.h"

bool ExecuteFiled(EpochPortal* portal, std::unique_ptr<LCommand> command) {
    if (!command) return false;
    portal->ReadLock();
    const bool nestsTooDeeply = command->NestsTooDeeply();
    portal->ReadUnlock();
    if (nestsTooDeeply) {
        portal->TellObservers(kEpochsTooDeep);
        return false;
    }
    // From its first execution the wrapper belongs to the undo chain.
    (new LockingCommand(command.release(), portal, true))->Execute();
    return true;
}
