// The base of all commands that edit the mass systems or settings of the focus epoch. A read-only
// epoch is never edited: a copy of it is made below it, put into focus and edited instead; undoing
// reverses both. Where the epoch has become a record since it was edited, as when a run has ended
// in it, the edit is reversed in a copy too, and redoing takes that copy out again.
#pragma once

#include <memory>

#include "Model/Commands/LCommand.h"
#include "Platform/Support/SupportDefs.h"

class EpochPortal;
class MassSystem;
class NewEpochCommand;

class FocusEpochCommand : public LCommand {
public:
    ~FocusEpochCommand() override;

    // If it would edit a copy. A copy in which an edit is undone may lie one deeper.
    [[nodiscard]] bool NestsTooDeeply() const final;
    void Execute() final;
    void Undo() final;

protected:
    // The change flags that observers are told when the edit was made and when it was unmade.
    FocusEpochCommand(EpochPortal* portal, int32 doneFlags, int32 undoneFlags);

    EpochPortal* Portal() const { return portal_; }
    // A system of the focus epoch, null when it has none of that identifier.
    MassSystem* FindSystem(int64 id) const;

    // Edits the focus epoch, which is writeable; false when there was nothing to edit.
    virtual bool Apply() = 0;
    // Called only after an Apply that answered true. The focus epoch may be a copy of the one that
    // was edited: finds all systems by their identifiers.
    virtual void Revert() = 0;

private:
    void RevertInCopy();

    EpochPortal* portal_;
    const int32 doneFlags_;
    const int32 undoneFlags_;
    std::unique_ptr<NewEpochCommand> newEpoch_;
    std::unique_ptr<NewEpochCommand> reversal_;  // the copy in which the edit is reversed
    bool reversedInCopy_ = false;                // that copy is in the tree
    bool copied_ = false;
    bool applied_ = false;
};
