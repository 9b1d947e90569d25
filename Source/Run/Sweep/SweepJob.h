// What number 0 tells the other ranks of a sweep, and what these do. Sends and takes lines.
#pragma once

#include "Platform/Support/SupportDefs.h"
#include "Run/Sweep/SweepPlan.h"
#include "Run/Sweep/SweepTeam.h"

class BMessage;
class ProgramResources;
class Ranks;
struct Options;

namespace SweepJob {

// For number 0: the others make their share of the runs from `first` on; there are none without a
// record.
void Tell(Ranks* ranks, const SweepPlan& plan, const BMessage* record, int64 first);
// For the others: makes the runs, and sends their lines. The exit status.
[[nodiscard]] int Do(Ranks* ranks, const Options& options, const ProgramResources& resources);
// For number 0: a line that has come, if any has.
[[nodiscard]] std::optional<SweepTeam::Line> Take(Ranks* ranks);

}  // namespace SweepJob
