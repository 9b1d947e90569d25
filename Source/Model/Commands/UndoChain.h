// A document's bounded history of executed commands, which it owns, with a redo position: the
// commands before it are done, those from it on are undone. Any thread may call; the chain's lock
// is taken before the model lock.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "Model/Commands/LCommand.h"
#include "Platform/Support/BLocker.h"

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
    // What would be undone or redone; kUnnamedCommand also for nothing.
    CommandName UndoName();
    CommandName RedoName();

    // The document is saved as it is now. It counts as saved whenever the history is back at this
    // count, unless the way there was lost by undoing past it and filing another command.
    void MarkSaved();
    // There are changes that no command has made.
    void MarkUnsaved();
    // At first true.
    bool IsSaved();

    // Forgets all commands, for another document. Whether that counts as saved is said by the mark.
    void Clear();

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
    std::optional<int32> savedCount_ = 0;
    bool redoing_ = false;
    // Commands dropped during a redo; the one being redone may be among them, so they live until
    // its end.
    std::vector<std::unique_ptr<LCommand>> dropped_;
};
