#include "Simulation/History/BranchCommand.h"

#include "Model/Commands/AddEpochCommand.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/MacroCommand.h"
#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/EpochPortal.h"
#include "Resources/CommandNames.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/RunHistory.h"

std::unique_ptr<LCommand> MakeBranchCommand(EpochPortal* portal, RunHistory* history,
                                            const Moment& moment) {
    if (!moment.IsPast() || !portal->HasEpoch(moment.run)) return nullptr;
    AbEpoch* const branch = moment.epoch->Copy();
    history->NoteBranch(branch, moment.run, branch->Time());
    auto command = std::make_unique<MacroCommand>(4);
    command->AddCommand(std::make_unique<SetEpochToCommand>(portal, moment.run->Parent()));
    command->AddCommand(std::make_unique<AddEpochCommand>(portal, branch));
    command->AddCommand(std::make_unique<SetEpochToCommand>(portal, branch));
    if (moment.focus != kNoSystemID)
        command->AddCommand(std::make_unique<SetSystemToCommand>(portal, moment.focus));
    return Named(kCommandBranch, std::move(command));
}
