// What the model-editing commands do and tell. That undo and redo bring back the same bytes of the
// whole tree, and that no record is touched, is seen by random edits.
#include <gtest/gtest.h>

#include <string>

#include "Model/Commands/AddEpochCommand.h"
#include "Model/Commands/DeleteEpochCommand.h"
#include "Model/Commands/DeleteSystemCommand.h"
#include "Model/Commands/NewEpochCommand.h"
#include "Model/Commands/NewSystemCommand.h"
#include "Model/Commands/SetCompVectorCommand.h"
#include "Model/Commands/SetEpochNameCommand.h"
#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Units/DimValue.h"
#include "Tests/Model/TestDocument.h"

namespace {

class ModelCommands : public testing::Test {
protected:
    ModelCommands() { portal.AddObserver(&observer); }
    ~ModelCommands() override { portal.RemoveObserver(&observer); }

    TestDocument document;
    EpochPortal& portal = document.portal;
    TestObserver observer;
};

TEST_F(ModelCommands, NewEpochCopiesTheFocusAndFreezesIt) {
    portal.SetSystemFromID(3);
    document.Run(new NewEpochCommand(&portal));
    EXPECT_FALSE(document.genesis->Writeable());
    EXPECT_EQ(portal.FocusEpoch()->Parent(), document.genesis);
    EXPECT_EQ(portal.FocusSystem(), portal.FocusEpoch()->SystemFromID(3));
    EXPECT_EQ(observer.all, kEpochAdded | kFocusMovedToCopy);
}

TEST_F(ModelCommands, SwitchingEpochsKeepsTheCalculatorStateOfTheOneThatIsLeft) {
    document.Run(new NewEpochCommand(&portal));
    AbEpoch* copy = portal.FocusEpoch();
    ASSERT_NE(document.genesis->CalculatorState(), nullptr);
    EXPECT_EQ(document.genesis->CalculatorState()->what, FourCC("ARCV"));
    document.calculator.segmentLength = 50;
    document.Run(new SetEpochToCommand(&portal, document.genesis));
    EXPECT_EQ(observer.last, 0xCFFF);
    document.Run(new SetEpochToCommand(&portal, copy));
    int32 kept = 0;
    EXPECT_EQ(copy->CalculatorState()->FindInt32("Segment", &kept), B_OK);
    EXPECT_EQ(kept, 50);
    EXPECT_EQ(document.genesis->CalculatorState()->FindInt32("Segment", &kept), B_OK);
    EXPECT_EQ(kept, 1);  // had one already
    portal.SetCalculator(nullptr);
    document.Run(new SetEpochToCommand(&portal, document.genesis));
    EXPECT_EQ(portal.FocusEpoch(), document.genesis);
}

TEST_F(ModelCommands, DeletingAnEpochMovesItsChildrenUp) {
    document.Run(new NewEpochCommand(&portal));
    AbEpoch* middle = portal.FocusEpoch();
    document.Run(new SetEpochNameCommand(&portal, "Middle"));
    document.Run(new NewEpochCommand(&portal));
    AbEpoch* leaf = portal.FocusEpoch();
    document.Run(new SetEpochToCommand(&portal, middle));
    auto* own = new Epoch;
    own->SetName("Own");
    document.Run(new AddEpochCommand(&portal, own));

    observer.all = 0;
    document.Run(new DeleteEpochCommand(&portal, middle));
    EXPECT_EQ(observer.all, 0xCFFF | kEpochRemoved);
    EXPECT_EQ(portal.FocusEpoch(), document.genesis);  // the parent
    ASSERT_EQ(document.genesis->CountChildren(), 2);
    EXPECT_EQ(document.genesis->ChildAt(0), leaf);
    EXPECT_EQ(leaf->Name(), "Middle");
    EXPECT_FALSE(leaf->NameFromParent());
    document.chain.Undo();
    EXPECT_TRUE(leaf->NameFromParent());
    EXPECT_EQ(portal.FocusEpoch(), middle);

    // A nameless one between siblings, not in focus: children keep inheriting from further up.
    document.Run(new SetEpochToCommand(&portal, leaf));
    document.Run(new NewEpochCommand(&portal));
    AbEpoch* below = portal.FocusEpoch();
    document.Run(new DeleteEpochCommand(&portal, leaf));
    EXPECT_TRUE(below->NameFromParent());
    EXPECT_EQ(below->Name(), "Middle");
    EXPECT_EQ(middle->IndexOfChild(below), 0);
    EXPECT_EQ(portal.FocusEpoch(), below);
}

TEST_F(ModelCommands, DeletingATopEpochFocusesTheNextOneOrDoesNothing) {
    const std::string before = document.Snapshot();
    document.Run(new DeleteEpochCommand(&portal, &document.root));
    document.Run(new DeleteEpochCommand(&portal, document.genesis));  // the only one
    EXPECT_EQ(document.Snapshot(), before);
    EXPECT_EQ(observer.calls, 0);

    document.Run(new NewEpochCommand(&portal));
    AbEpoch* child = portal.FocusEpoch();
    document.Run(new SetEpochToCommand(&portal, document.genesis));
    document.Run(new DeleteEpochCommand(&portal, document.genesis));
    EXPECT_EQ(portal.FocusEpoch(), child);
    EXPECT_EQ(child->Parent(), &document.root);
    EXPECT_EQ(child->Name(), "Genesis");
}

TEST_F(ModelCommands, RenamingMakesTheNameTheEpochsOwn) {
    document.Run(new NewEpochCommand(&portal));
    AbEpoch* const copy = portal.FocusEpoch();
    document.Run(new SetEpochNameCommand(&portal, "First try"));
    EXPECT_EQ(observer.last, 0x100);
    EXPECT_EQ(copy->Name(), "First try");
    document.chain.Undo();
    EXPECT_EQ(copy->Name(), "Genesis");
    EXPECT_FALSE(copy->NameFromParent());
    document.Run(new SetEpochNameCommand(&portal, "Second", "Typed over"));
    document.chain.Undo();
    EXPECT_EQ(copy->Name(), "Typed over");
    // Any epoch of the tree, but not one that has gone since the user chose it.
    document.Run(new SetEpochNameCommand(&portal, "Origin", document.genesis));
    EXPECT_EQ(document.genesis->Name(), "Origin");
    EXPECT_EQ(portal.FocusEpoch(), copy);
    document.Run(new DeleteEpochCommand(&portal, copy));
    document.Run(new SetEpochNameCommand(&portal, "Gone", copy));
    EXPECT_EQ(copy->Name(), "Typed over");
}

TEST_F(ModelCommands, NewSystemIsAddedAndFocused) {
    const std::string before = document.Snapshot();
    document.Run(new NewSystemCommand(&portal, NewBody("No parent", 9, 1.0, {}), 77));
    document.Run(new NewSystemCommand(&portal, NewBody("In a body", 9, 1.0, {}), 0));
    document.Run(new NewSystemCommand(&portal, NewBody("Twin", 4, 1.0, {}), kRootSystemID));
    EXPECT_EQ(document.Snapshot(), before);
    EXPECT_EQ(observer.calls, 0);
    document.Run(new NewSystemCommand(&portal, NewBody("New", 9, 1.0, {}), 1));
    ASSERT_NE(document.Find(9), nullptr);
    EXPECT_EQ(document.Find(9)->Parent(), document.Find(1));
    EXPECT_EQ(portal.FocusSystem(), document.Find(9));
    EXPECT_EQ(observer.last, 0x800);
    document.chain.Undo();
    EXPECT_EQ(observer.last, 0x400);
}

TEST_F(ModelCommands, DeleteSystemMovesTheFocusAway) {
    portal.SetSystemFromID(3);  // within the group
    document.Run(new DeleteSystemCommand(&portal, 1, 4));
    EXPECT_EQ(document.Find(3), nullptr);
    EXPECT_EQ(portal.FocusSystem(), document.Find(4));
    EXPECT_EQ(observer.last, 0x400);
    const std::string after = document.Snapshot();
    document.Run(new DeleteSystemCommand(&portal, kRootSystemID, 0));
    document.Run(new DeleteSystemCommand(&portal, 55, 0));
    EXPECT_EQ(document.Snapshot(), after);
}

TEST_F(ModelCommands, AGroupMovesAsAWhole) {
    document.Run(new SetCompVectorCommand(&portal, kPositionQuantity, 1, {5.0, 1.0, 0.0, 1000.0}));
    EXPECT_EQ(document.Find(2)->Position(), (ThreeVector{2.0, 1.0, 0.0}));
    EXPECT_EQ(document.Find(3)->Position(), (ThreeVector{6.0, 1.0, 0.0}));
    EXPECT_EQ(document.Find(1)->PositionUval(), 1000.0);
    EXPECT_EQ(observer.last, kPositionChanged);
}

// What was typed meanwhile is committed between the making of a command and its execution.
TEST_F(ModelCommands, AGroupIsPutBackToWhereItWasWhenItWasMoved) {
    auto* const toOrigin =
        new SetCompVectorCommand(&portal, kVelocityQuantity, kRootSystemID, {0.0, 0.0, 0.0, 1.0});
    document.Run(new SetCompVectorCommand(&portal, kVelocityQuantity, 4, 1, DimValue(-2770, 1.0)));
    const std::string before = document.Snapshot();
    document.Run(toOrigin);
    EXPECT_NE(document.Snapshot(), before);
    document.chain.Undo();
    EXPECT_EQ(document.Snapshot(), before);
}

TEST_F(ModelCommands, AComponentIsSetRelativeToTheReferent) {
    document.Find(4)->SetRelativeTo(1);
    document.Find(3)->SetVelocity({0.0, 4.0, 0.0});  // the pair moves at 3
    document.Run(new SetCompVectorCommand(&portal, kVelocityQuantity, 4, 1, DimValue(10.0, 2.0)));
    EXPECT_EQ(document.Find(4)->Velocity(), (ThreeVector{0.0, 13.0, 0.0}));
    EXPECT_EQ(document.Find(4)->SpeedUval(), 2.0);
    EXPECT_EQ(document.Find(4)->Position(), (ThreeVector{-8.0, 2.0, 0.0}));
}

// Freezing an epoch is no command: a redo may find the epoch read-only that it once edited, or the
// other way round.
TEST_F(ModelCommands, RedoGoesIntoACopyOrNotAsTheEpochIsNow) {
    document.Run(new SetCompVectorCommand(&portal, kPositionQuantity, 1, 0, DimValue(7.0, 1.0)));
    for (const bool isWriteable : {false, true}) {
        document.chain.Undo();
        document.genesis->SetWriteable(isWriteable);
        document.chain.Redo();
        EXPECT_EQ(portal.FocusEpoch() == document.genesis, isWriteable);
        EXPECT_EQ(document.Find(1)->Position().x, 7.0);
        EXPECT_EQ(document.genesis->SystemFromID(1)->Position().x, isWriteable ? 7.0 : 3.0);
    }
}

}  // namespace
