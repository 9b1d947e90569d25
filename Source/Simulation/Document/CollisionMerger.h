// Merges the bodies that a collision message names: each lighter body into its heavier partner,
// with mass and momentum, volume and mass-weighted colours kept and the names joined. For the
// thread that owns the portal, while the calculator is at rest.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Calculation/RunEnding.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"

class AbEpoch;
class BMessage;
class EpochPortal;

// One body absorbed by another.
struct Merger {
    int64 survivor;
    int64 absorbed;
    std::string survivorName;  // before the names were joined
    std::string absorbedName;
    double time;               // s, of the focus epoch
    double kineticEnergyLoss;  // in units of GM: m3/s2 * m2/s2; never negative but for rounding
};

// What one collision message came to.
struct MergeResult {
    std::vector<Merger> mergers;
    // Total energy of the focus epoch's bodies after the mergers minus that before, in units of GM:
    // kinetic energy lost, binding energy of the merged pairs, and what moving a body to the pair's
    // centre of mass changed in the field of the others.
    double energyChange = 0.0;
    // Likewise for the angular momentum about the origin, in units of GM: what became spin.
    ThreeVector angularMomentumChange;
    // Nothing was merged although bodies touch: a run must not go on, or it stops here for ever.
    std::optional<RunEnding> unmerged;
};

// `collisions` holds the parallel int64 fields "p" (lighter) and "q" (heavier). Commits pending
// edits, changes the focus epoch under the portal's write lock, tells the observers. Not undoable.
// `joiner` stands between the two names, " & ". `touchedIn`: the epoch of the run that has found
// them, if that has ended; null: the one in focus. When it has lost the focus meanwhile, by an edit
// or an undo, nothing is done: the bodies touch again as soon as a run goes on from there.
MergeResult MergeCollidingBodies(EpochPortal* portal, const BMessage& collisions,
                                 const std::string& joiner, const AbEpoch* touchedIn = nullptr);
