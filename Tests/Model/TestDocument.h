// A small document for tests of commands: an invisible root with one epoch, "Genesis", in focus.
//   -3 Root system: 0 Sun, 1 Pair (2 Light of mass 1 at x = 0, 3 Heavy of mass 3 at x = 4), 4 Rock
// All numbers are sums of few powers of two, so that edits of groups undo to the same bits.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Model/Commands/LCommand.h"
#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Systems/CompositeSystem.h"
#include "Platform/Application/BMessage.h"

class TestCalculator : public AbCalculator {
public:
    [[nodiscard]] status_t Archive(BMessage* into, bool deep) const override;
    int32 SegmentLength() const override { return segmentLength; }
    void SetSegmentLength(int32 length) override { segmentLength = length; }
    int32 UpdatesPerSecond() const override { return updatesPerSecond; }
    void SetUpdatesPerSecond(int32 updates) override { updatesPerSecond = updates; }

    int32 segmentLength = 1;
    int32 updatesPerSecond = 80;
};

// Counts what it is told and asked. Does something when asked to commit, if it shall.
class TestObserver : public Observer {
public:
    void Changed(int32 what) override {
        calls++;
        last = what;
        all |= what;
    }
    bool CommitChanges() override {
        commits++;
        return onCommit ? onCommit() : answer;
    }

    int calls = 0;
    int32 last = 0;
    int32 all = 0;
    int commits = 0;
    bool answer = false;
    std::function<bool()> onCommit;
};

struct TestDocument {
    TestDocument();

    // Through a LockingCommand, filed in the chain.
    void Run(LCommand* command);
    MassSystem* Find(int64 id) const { return portal.FocusEpoch()->RootSystem()->SystemFromID(id); }
    // Every epoch of the tree in pre-order.
    std::vector<AbEpoch*> Epochs() const;
    // All bytes of the tree and what is in focus. The calculator states that epochs keep are left
    // out: they are not undone.
    std::string Snapshot() const;

    Epoch root;
    Epoch* genesis;
    TestCalculator calculator;
    UndoChain chain;
    EpochPortal portal;
};

Body* NewBody(const char* name, int64 id, double m, ThreeVector position);
CompositeSystem* NewComposite(const char* name, int64 id);
std::string Bytes(const BMessage& record);
std::string DeepArchive(const BArchivable& object);
// "NAME*COUNT " of each field.
std::string FieldNames(const BMessage& record);
