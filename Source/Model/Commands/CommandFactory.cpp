#include "Model/Commands/CommandFactory.h"

#include "Model/Commands/LockingCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"

bool ExecuteFiled(EpochPortal* portal, std::unique_ptr<LCommand> command) {
    if (!command) return false;
    bool nestsTooDeeply = false;
    {
        const ReadGuard guard(portal);
        nestsTooDeeply = command->NestsTooDeeply();
    }
    if (nestsTooDeeply) {
        portal->TellObservers(kEpochsTooDeep);
        return false;
    }
    // From its first execution the wrapper belongs to the undo chain.
    (new LockingCommand(command.release(), portal, true))->Execute();
    return true;
}
