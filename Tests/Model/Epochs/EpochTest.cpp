// Epochs, their tree, their archives, and the cursor.
#include <gtest/gtest.h>

#include <memory>

#include "Model/Epochs/EpochCursor.h"
#include "Model/Units/UnitTable.h"
#include "Tests/Model/TestDocument.h"

namespace {

// A(B(D), C), owned by A.
struct Tree {
    Tree() {
        a.SetName("A");
        a.AddChild(b);
        a.AddChild(c);
        b->AddChild(d);
    }
    Epoch a;
    Epoch* b = new Epoch;
    Epoch* c = new Epoch;
    Epoch* d = new Epoch;
};

std::unique_ptr<Epoch> Restored(BMessage* record) {
    return std::unique_ptr<Epoch>(dynamic_cast<Epoch*>(instantiate_object(record)));
}

TEST(Epoch, InheritsItsNameUntilItHasItsOwn) {
    Tree tree;
    tree.b->SetNameFromParent(false);
    tree.a.SetName("New");
    EXPECT_EQ(tree.b->Name(), "A");
    EXPECT_EQ(tree.d->Name(), "A");
    EXPECT_EQ(tree.c->Name(), "New");
    tree.d->SetName("D");
    tree.d->SetNameFromParent(true);
    EXPECT_EQ(tree.d->Name(), "A");
}

TEST(Epoch, CopyIsWriteableAndFree) {
    Tree tree;
    tree.b->SetName("B");
    tree.b->SetWriteable(false);
    tree.b->SetCircumstance(77);
    tree.b->SetCOMOnGo(false);
    tree.b->RootSystem()->AddChild(NewBody("b", 3, 1.0, {}));
    tree.b->SetCalculatorState(new BMessage(FourCC("ARCV")));
    const std::unique_ptr<AbEpoch> copy(tree.b->Copy());
    EXPECT_TRUE(copy->Writeable() && copy->NameFromParent() && !copy->COMOnGo());
    EXPECT_EQ(copy->Name(), "B");  // no parent to inherit from
    EXPECT_EQ(copy->Circumstance(), 77);
    EXPECT_EQ(copy->Parent(), nullptr);
    EXPECT_EQ(copy->CountChildren(), 0);
    EXPECT_EQ(DeepArchive(*copy->RootSystem()), DeepArchive(*tree.b->RootSystem()));
    EXPECT_NE(copy->SystemFromID(3), tree.b->SystemFromID(3));
    EXPECT_NE(copy->CalculatorState(), nullptr);
    EXPECT_NE(copy->CalculatorState(), tree.b->CalculatorState());
}

TEST(Epoch, ArchiveHasItsFieldsInOrder) {
    Tree tree;
    tree.a.SetCalculatorState(new BMessage(FourCC("ARCV")));
    BMessage record, child, shallow;
    ASSERT_EQ(tree.a.Archive(&record, true), B_OK);
    EXPECT_EQ(FieldNames(record),
              "Epoch Name*1 Time*1 T Uval*1 Reason*1 Cutoff*1 Order*1 COM on Go*1 Writ*1 N Inh*1 "
              "Root*1 Children*2 Calc*1 class*1 ");
    ASSERT_EQ(record.FindMessage("Children", 0, &child), B_OK);
    EXPECT_EQ(child.what, FourCC("ARCV"));
    EXPECT_FALSE(child.HasName("Epoch Name"));
    EXPECT_FALSE(child.HasName("Calc"));
    ASSERT_EQ(tree.a.Archive(&shallow, false), B_OK);
    EXPECT_FALSE(shallow.HasName("Children"));
    EXPECT_TRUE(shallow.HasName("Root"));
}

TEST(Epoch, ArchiveRestoresTheTree) {
    TestDocument document;
    auto* run = document.genesis->Copy();
    run->SetTime(-1.5e9);
    run->SetOrder(11);
    run->SetCutoff(1e-6);
    document.genesis->AddChild(run);
    document.genesis->SetWriteable(false);
    run->SetCalculatorState(new BMessage(FourCC("ARCV")));
    BMessage record(FourCC("ARCV"));
    ASSERT_EQ(document.root.Archive(&record, true), B_OK);
    const auto restored = Restored(&record);
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ(DeepArchive(*restored), DeepArchive(document.root));
    EXPECT_EQ(restored->ChildAt(0)->ChildAt(0)->Order(), 11);
    EXPECT_EQ(restored->ChildAt(0)->ChildAt(0)->Parent()->Parent(), restored.get());
}

TEST(Epoch, ArchiveWithoutFieldsRestoresTheDefaults) {
    BMessage record;
    record.AddString("class", "Epoch");
    const auto epoch = Restored(&record);
    ASSERT_NE(epoch, nullptr);
    EXPECT_FALSE(epoch->Writeable());
    EXPECT_EQ(epoch->Circumstance(), 8);
    EXPECT_EQ(epoch->Order(), 4);
    EXPECT_TRUE(epoch->NameFromParent() && epoch->COMOnGo());
    EXPECT_EQ(epoch->RootSystem()->ID(), kRootSystemID);

    record.AddString("Epoch Name", "Own");
    record.AddDouble("Cutoff", 0.5);
    record.AddDouble("T Uval", 0.0);
    EXPECT_FALSE(Restored(&record)->NameFromParent());
    EXPECT_EQ(Restored(&record)->Cutoff(), 1e-11);
    EXPECT_EQ(Restored(&record)->TimeUval(), TIME_UVAL_PREF);
    record.AddBool("N Inh", true);
    EXPECT_TRUE(Restored(&record)->NameFromParent());
}

TEST(Epoch, BrokenEntriesAreSkippedAndTheRootIsNeverMissing) {
    BMessage body;
    const std::unique_ptr<Body> rock(NewBody("Rock", 6, 1.0, {}));
    ASSERT_EQ(rock->Archive(&body), B_OK);
    BMessage unknown;
    unknown.AddString("class", "Comet");

    BMessage older;  // bodies in the epoch's own record
    older.AddString("class", "Epoch");
    older.AddMessage("Bodies", &unknown);
    older.AddMessage("Bodies", &body);
    EXPECT_EQ(Restored(&older)->RootSystem()->CountChildren(), 1);
    EXPECT_NE(Restored(&older)->SystemFromID(6), nullptr);

    BMessage broken(older);
    broken.AddMessage("Root", &unknown);
    broken.AddMessage("Children", &body);
    broken.AddMessage("Children", &unknown);
    broken.AddMessage("Children", &older);
    const auto epoch = Restored(&broken);
    EXPECT_EQ(epoch->RootSystem()->ID(), kRootSystemID);
    EXPECT_EQ(epoch->RootSystem()->CountChildren(), 0);
    ASSERT_EQ(epoch->CountChildren(), 1);
    EXPECT_NE(epoch->ChildAt(0)->SystemFromID(6), nullptr);
}

// Four thousand runs, each below the last: every operation must do without recursion.
TEST(Epoch, DeepChainsAreHandled) {
    constexpr int32 kLength = 4000;
    auto chain = std::make_unique<Epoch>();
    chain->SetName("Genesis");
    AbEpoch* deepest = chain.get();
    for (int32 i = 1; i < kLength; i++) {
        auto* next = new Epoch;
        next->RootSystem()->AddChild(NewBody("b", i, i, {}));
        deepest->AddChild(next);
        deepest = next;
    }
    EXPECT_EQ(deepest->Name(), "Genesis");
    EXPECT_EQ(chain->MaxSystemID(), kLength - 1);
    int32 visited = 0;
    for (EpochCursor cursor(chain.get()); cursor.GetEpoch(); cursor.Increment())
        visited++;
    EXPECT_EQ(visited, kLength);

    const std::string bytes = DeepArchive(*chain);
    chain.reset();
    BMessage record;
    ASSERT_EQ(record.Unflatten(bytes.data(), bytes.size()), B_OK);
    auto restored = Restored(&record);
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ(restored->MaxSystemID(), kLength - 1);
    EXPECT_EQ(DeepArchive(*restored), bytes);
    restored->Prune();
    EXPECT_EQ(restored->CountChildren(), 0);
}

}  // namespace
