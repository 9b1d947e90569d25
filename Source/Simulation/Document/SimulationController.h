// What a user can do to a simulation, as operations that need no window: bodies, groups, epochs,
// the centre of mass, undo and redo, and the resolution of collisions. The window and the runner
// forward to it. Owned by what owns the document; all operations are called on that owner's thread,
// with no lock of the document held. An operation that the calculation must not run through pauses
// it first, as if the user had.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"
#include "Simulation/Document/CollisionMerger.h"

class AbEpoch;
class BMessage;
class Body;
class EpochPortal;
class LCommand;
class MassSystem;
class ProgramResources;
class RunControl;
class SimulationDocument;
struct VectorQuantity;

class SimulationController {
public:
    // None is owned.
    SimulationController(SimulationDocument* document, RunControl* run,
                         const ProgramResources* resources);

    // Adds a body in the focus system's group: the next name, a colour unlike those in use, on a
    // circular orbit about the heaviest body, outside all others, where it touches nothing, shown
    // in the units of the focus system. It becomes the focus system.
    // With a motion it is there and moves so, instead.
    struct Motion {
        ThreeVector position;  // m
        ThreeVector velocity;  // m/s
    };
    void CreateBody(const Motion* motion = nullptr);
    // Puts a system elsewhere, or gives it another velocity; in the document's frame. False when
    // nothing was to be done.
    bool SetVector(int64 id, const VectorQuantity& quantity, const ThreeVector& to);
    void DeleteBody(int64 id);
    void DeleteCurrentBody();
    // Puts the system into focus. No edit, so not a step of the history.
    void EditBody(int64 id);
    // What the focus system is shown relative to.
    void SetRelativeTo(int64 id);

    // Joins the systems in a new composite system. Refused: none of them exists, or they would lie
    // in more groups than a document can hold.
    enum class Grouping { kDone, kNoMembers, kTooDeep };
    Grouping GroupSystems(const std::vector<int64>& ids, const std::string& name);
    // Puts a composite's members in its place; false for anything else.
    bool DissolveSystem(int64 id);
    bool DissolveFocusSystem();

    // Puts the centre of mass at rest at the origin, as one undoable step; false when no body has
    // mass.
    bool ToCenterOfMass();

    // Puts the epoch into focus. A step of the history, since the steps before it belong to the
    // epoch that was in focus.
    void EditEpoch(AbEpoch* epoch);
    // False for an epoch that must stay: the one in focus, where no other would be there to look
    // at.
    bool DeleteEpoch(AbEpoch* epoch);
    // Logs the state as it is now: a copy below the focus epoch becomes the focus. A run goes on in
    // the copy.
    void DupCurrentEpoch();

    // False when there was nothing to undo or redo.
    bool Undo();
    bool Redo();

    // Resolves a collision message of the calculator; a run goes on from the merged state, or is
    // paused where bodies touch that cannot be merged.
    // `merged`, if given, is called between the two, with the calculator at rest.
    using Merged = std::function<void(const MergeResult&)>;
    MergeResult Collide(const BMessage& collisions, const Merged& merged = {});

private:
    EpochPortal* Portal() const;
    void PauseForEdit();
    std::unique_ptr<Body> MakeBody(const Motion* motion);
    void ShowAsBefore(Body* body) const;
    void Place(Body* body, const std::vector<Body*>& others, int32 turn) const;
    int64 NextFocusAfter(int64 deleted) const;
    int64 NewSystemID() const;
    int64 FocusSystemID() const;

    SimulationDocument* const document_;
    RunControl* const run_;
    const ProgramResources* const resources_;
};
