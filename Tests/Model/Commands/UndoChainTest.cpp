// The undo chain, and the commands that run and bundle others.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "Model/Commands/LockingCommand.h"
#include "Model/Commands/MacroCommand.h"
#include "Tests/Model/TestDocument.h"

namespace {

// Writes down what happens to it: "+1" executed, "-1" undone, "~1" deleted.
class LoggedCommand : public LCommand {
public:
    LoggedCommand(std::string* log, int id) : log_(log), name_(std::to_string(id) + " ") {}
    ~LoggedCommand() override { *log_ += "~" + name_; }
    void Execute() override { *log_ += "+" + name_; }
    void Undo() override { *log_ += "-" + name_; }

private:
    std::string* log_;
    std::string name_;
};

std::string Taken(std::string* log) {
    return std::exchange(*log, {});
}

TEST(UndoChain, KnowsWhetherTheDocumentIsAsItWasSaved) {
    std::string log;
    UndoChain chain;
    const auto add = [&](int id) { chain.AddExecuted(new LoggedCommand(&log, id)); };
    EXPECT_TRUE(chain.IsSaved());
    add(1);
    EXPECT_FALSE(chain.IsSaved());
    chain.Undo();
    EXPECT_TRUE(chain.IsSaved());
    chain.Redo();
    add(2);
    chain.MarkSaved();
    chain.Undo();
    EXPECT_FALSE(chain.IsSaved());
    chain.Redo();
    EXPECT_TRUE(chain.IsSaved());
    // As many commands as were saved, but another one: the way back is lost.
    chain.Undo();
    add(3);
    EXPECT_EQ(chain.ExecutedCount(), 2);
    EXPECT_FALSE(chain.IsSaved());
    chain.Undo();
    chain.Undo();
    EXPECT_FALSE(chain.IsSaved());
    chain.MarkSaved();
    chain.MarkUnsaved();
    EXPECT_FALSE(chain.IsSaved());
    chain.Clear();
    EXPECT_FALSE(chain.IsSaved());
    chain.MarkSaved();
    EXPECT_TRUE(chain.IsSaved());
    EXPECT_FALSE(chain.CanUndo() || chain.CanRedo());
}

TEST(UndoChain, ANewCommandDropsTheRedoHistory) {
    std::string log;
    UndoChain chain;
    chain.Undo();
    chain.Redo();
    for (int i = 1; i <= 3; i++)
        chain.AddExecuted(new LoggedCommand(&log, i));
    chain.Undo();
    chain.Undo();
    chain.Redo();
    EXPECT_EQ(Taken(&log), "-3 -2 +2 ");
    EXPECT_TRUE(chain.CanRedo());
    chain.AddExecuted(new LoggedCommand(&log, 4));
    EXPECT_EQ(Taken(&log), "~3 ");
    EXPECT_FALSE(chain.CanRedo());
    EXPECT_EQ(chain.ExecutedCount(), 3);
}

TEST(UndoChain, OnlySoManyAreKept) {
    std::string log;
    UndoChain chain;
    for (int i = 1; i <= 101; i++)
        chain.AddExecuted(new LoggedCommand(&log, i));
    EXPECT_EQ(Taken(&log), "~1 ");
    EXPECT_EQ(chain.ExecutedCount(), 101);
    chain.SetMaxUndoLevel(4);
    EXPECT_TRUE(Taken(&log).ends_with("~96 ~97 "));
    chain.Undo();
    chain.Undo();
    chain.Undo();
    EXPECT_EQ(Taken(&log), "-101 -100 -99 ");
    chain.SetMaxUndoLevel(3);  // index 1 of 98 99 100 101 becomes index 1 of 99 100 101
    chain.Redo();
    EXPECT_EQ(Taken(&log), "~98 +100 ");
}

TEST(MacroCommand, UndoesInReverse) {
    std::string log;
    MacroCommand macro(2);
    macro.AddCommand(std::make_unique<LoggedCommand>(&log, 1));
    macro.AddCommand(std::make_unique<LoggedCommand>(&log, 2));
    macro.Execute();
    macro.Undo();
    EXPECT_EQ(log, "+1 +2 -2 -1 ");
}

TEST(LockingCommand, CommitsFirstAndFilesItselfOnce) {
    std::string log;
    TestObserver observer;
    TestDocument document;
    document.portal.AddObserver(&observer);
    observer.onCommit = [&log] {
        log += "commit ";
        return false;
    };
    document.Run(new LoggedCommand(&log, 1));
    document.chain.Undo();
    document.chain.Redo();
    EXPECT_EQ(Taken(&log), "commit +1 -1 commit +1 ");
    EXPECT_EQ(document.chain.ExecutedCount(), 1);
    EXPECT_FALSE(document.chain.CanRedo());
    document.chain.Undo();
    EXPECT_FALSE(document.chain.CanUndo());
}

TEST(LockingCommand, AOneShotDeletesItselfAndIsNotFiled) {
    std::string log;
    TestDocument document;
    (new LockingCommand(new LoggedCommand(&log, 1), &document.portal, false))->Execute();
    EXPECT_EQ(log, "+1 ~1 ");
    EXPECT_FALSE(document.chain.CanUndo());
    document.portal.WriteLock();  // was released
    document.portal.WriteUnlock();
}

// The edit that a redo commits first is new, and a new edit drops the redo history.
TEST(LockingCommand, APendingEditComesBeforeTheCommandAndCancelsARedo) {
    std::string log;
    int pending = 2;
    TestObserver observer;
    TestDocument document;
    document.portal.AddObserver(&observer);
    observer.onCommit = [&] {
        document.Run(new LoggedCommand(&log, pending));
        return true;
    };
    document.Run(new LoggedCommand(&log, 1));
    EXPECT_EQ(Taken(&log), "+2 +1 ");
    document.chain.Undo();
    document.chain.Undo();
    EXPECT_EQ(Taken(&log), "-1 -2 ");
    pending = 3;
    document.chain.Redo();
    EXPECT_EQ(Taken(&log), "+3 ~2 ~1 ");
    EXPECT_FALSE(document.chain.CanRedo());
    document.chain.Undo();
    EXPECT_EQ(Taken(&log), "-3 ");
    EXPECT_FALSE(document.chain.CanUndo());
}

}  // namespace
