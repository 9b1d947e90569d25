// The step of the history that begins another branch at a moment of the past.
#pragma once

#include <memory>

#include "Model/Commands/LCommand.h"

class EpochPortal;
class RunHistory;
struct Moment;

// Logs an epoch with that state below the start of its run, and puts it into focus; the history
// knows where it begins. The caller holds the portal's read lock; null: the run is not in the tree
// any more.
[[nodiscard]] std::unique_ptr<LCommand> MakeBranchCommand(EpochPortal* portal, RunHistory* history,
                                                          const Moment& moment);
