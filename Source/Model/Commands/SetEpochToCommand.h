// Puts another epoch into focus, while that is in the tree: what went into a copy at first may go
// elsewhere when it is redone. The epoch that is left keeps the calculator's state, so that it can
// be resumed exactly; undoing does not take that back. Redoing comes back to what undoing has left:
// to a copy of the target, if edits of that were reversed there.
#pragma once

#include "Model/Commands/LCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Systems/MassSystem.h"

class AbEpoch;
class EpochPortal;

// Puts another mass system of the focus epoch into focus.
class SetSystemToCommand final : public LCommand {
public:
    SetSystemToCommand(EpochPortal* portal, int64 systemID);

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    int64 systemID_;
    int64 previousID_ = kNoSystemID;
};

class SetEpochToCommand final : public LCommand {
public:
    SetEpochToCommand(EpochPortal* portal, AbEpoch* target, int32 what = kAllOfFocusChanged);

    void Execute() override;
    void Undo() override;

private:
    EpochPortal* portal_;
    AbEpoch* target_;
    int32 what_;
    AbEpoch* previousEpoch_ = nullptr;  // null: nothing was done
    int64 previousSystemID_ = kNoSystemID;
    AbEpoch* leftAt_ = nullptr;  // by undoing; may be gone
    int64 leftAtSystemID_ = kNoSystemID;
};
