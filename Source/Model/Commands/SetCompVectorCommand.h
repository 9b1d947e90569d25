// Sets the position or velocity, or one component of it, of any system of the focus epoch, together
// with the unit it is shown in. What moves a group is the command that the group itself makes. Undo
// puts the system back to where it was when the command was executed, not when it was made: another
// edit may have been committed between the two. In a copy of the epoch that was edited it does so
// body by body.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Model/Commands/FocusEpochCommand.h"
#include "Model/Systems/MassSystem.h"
#include "Model/Units/DimValue.h"

// The vector quantities of a mass system.
struct VectorQuantity {
    LCommand* (MassSystem::*makeCommand)(ThreeVector, ThreeVector);
    ThreeVector (MassSystem::*get)() const;
    void (MassSystem::*set)(ThreeVector);
    double (MassSystem::*getUval)() const;
    void (MassSystem::*setUval)(double);
    int32 changeFlag;
    CommandName name;
};
extern const VectorQuantity kPositionQuantity;
extern const VectorQuantity kVelocityQuantity;

class AbEpoch;

class SetCompVectorCommand final : public FocusEpochCommand {
public:
    // All three components, in absolute coordinates.
    SetCompVectorCommand(EpochPortal* portal, const VectorQuantity& quantity, int64 systemID,
                         const DimVector& to);
    // One component (0: x, 1: y, 2: z), as it is shown: relative to the system's referent.
    SetCompVectorCommand(EpochPortal* portal, const VectorQuantity& quantity, int64 systemID,
                         int32 component, const DimValue& to);
    ~SetCompVectorCommand() override;

protected:
    bool Apply() override;
    void Revert() override;

private:
    std::unique_ptr<LCommand> MakeMove() const;
    ThreeVector WithComponent(ThreeVector current) const;
    void RevertInOtherEpoch(MassSystem* system) const;

    const VectorQuantity& quantity_;
    int64 systemID_;
    ThreeVector to_;
    int32 component_;  // -1: all; else only that one of `to_` counts
    double newUval_;
    double oldUval_ = 1.0;
    MassSystem* system_ = nullptr;
    const AbEpoch* epoch_ = nullptr;  // of the move; for comparison only
    std::unique_ptr<LCommand> move_;
    std::vector<std::pair<int64, ThreeVector>> formerly_;  // of all bodies that it moves
};
