// A document's bounded history of executed commands, which it owns, with a redo position: the
// commands before it are done, those from it on are undone. Any thread may call; the chain's lock
// is taken before the model lock.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "BLocker.h"
#include "LCommand.h"

class UndoChain {
public:
    UndoChain();
    virtual ~UndoChain();
    UndoChain(const UndoChain&) = delete;
    UndoChain& operator=(const UndoChain&) = delete;

    // Files a command that was just executed and drops the redo history.
    void AddExecuted(LCommand* command);
    void Undo();
    void Redo();
    bool CanUndo();
    bool CanRedo();
    // +1 for every command filed and every redo, -1 for every undo.
    int32 ExecutedCount();

    // Not positive: ignored.
    void SetMaxUndoLevel(int32 level);
    int32 MaxUndoLevel() const;

    // For callers that need several calls to be one.
    bool Lock() { return lock_.Lock(); }
    void Unlock() { lock_.Unlock(); }

    // True when the command, asked to redo itself, has left the history meanwhile: the edits that
    // it committed first were filed and dropped it. It must then do nothing.
    [[nodiscard]] bool WasDropped(const LCommand* command);

private:
    void EnforceMaxSize();

    mutable BLocker lock_;
    std::vector<std::unique_ptr<LCommand>> commands_;
    std::size_t position_ = 0;
    int32 maxUndoLevel_ = 100;
    int32 executedCount_ = 0;
    bool redoing_ = false;
    // Commands dropped during a redo; the one being redone may be among them, so they live until
    // its end.
    std::vector<std::unique_ptr<LCommand>> dropped_;
};
