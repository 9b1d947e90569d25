// Bodies, composite systems, the null system, and their archives.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "Model/Systems/MassSystem.h"
#include "Model/Units/UnitTable.h"
#include "Tests/Model/TestDocument.h"

namespace {

std::unique_ptr<MassSystem> Restored(BMessage* record) {
    return std::unique_ptr<MassSystem>(dynamic_cast<MassSystem*>(instantiate_object(record)));
}

BMessage BodyRecord(int64 id) {
    const std::unique_ptr<Body> body(NewBody("b", id, 1.0, {}));
    BMessage record;
    EXPECT_EQ(body->Archive(&record), B_OK);
    return record;
}

// Children at x = 0 and x = 4 of masses 1 and 3, moving at y speeds 8 and 0.
std::unique_ptr<CompositeSystem> NewPair() {
    std::unique_ptr<CompositeSystem> pair(NewComposite("Pair", 10));
    pair->AddChild(NewBody("Light", 1, 1.0, {}));
    pair->AddChild(NewBody("Heavy", 2, 3.0, {4.0, 0.0, 0.0}));
    pair->ChildAt(0)->SetVelocity({0.0, 8.0, 0.0});
    pair->ChildAt(0)->SetRadius(2.0);
    return pair;
}

TEST(Body, SettersBoundWhatTheyStore) {
    const std::unique_ptr<Body> body(NewBody("b", 7, -5.0, {}));
    EXPECT_EQ(body->M(), 5.0);
    body->SetRadius(-2.0);
    EXPECT_EQ(body->Radius(), 2.0);
    body->SetRelativeTo(3);
    body->SetRelativeTo(7);
    EXPECT_EQ(body->RelativeTo(), 3);
    for (const double bad : {0.0, -1.0, HUGE_VAL, static_cast<double>(NAN)}) {
        body->SetPositionUval(bad);
        EXPECT_EQ(body->PositionUval(), POSITION_UVAL_PREF);
        body->SetRadiusUval(bad);
        EXPECT_EQ(body->RadiusUval(), RADIUS_UVAL_PREF);
    }
    EXPECT_EQ(body->AddChild(NewPair().get()), B_ERROR);
}

TEST(Body, ArchiveHasItsFieldsInOrderAndRestoresEqual) {
    const std::unique_ptr<Body> body(NewBody("", 5000000000, 2.5, {1.0, 2.0, 3.0}));
    body->SetVelocity({4.0, 5.0, 6.0});
    body->SetRadius(7.0);
    body->SetTrailOn(false);
    body->SetRelativeTo(12);
    body->SetMassUval(9.0);
    BMessage record;
    ASSERT_EQ(body->Archive(&record), B_OK);
    EXPECT_EQ(FieldNames(record),
              "ID*1 Body Name*1 r Uval*1 v Uval*1 M Uval*1 Rad Uval*1 Trail Color*1 Disc Color*1 "
              "Trail On*1 Disc On*1 Rel to*1 r*3 v*3 Mass*1 Radius*1 class*1 ");
    EXPECT_TRUE(record.HasName("Trail Color", B_RGB_COLOR_TYPE));
    const auto restored = Restored(&record);
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ(DeepArchive(*restored), DeepArchive(*body));
    EXPECT_EQ(restored->ID(), 5000000000);
}

TEST(Body, ArchiveWithoutFieldsRestoresTheDefaults) {
    BMessage record;
    record.AddString("class", "Body");
    record.AddColor("Trail Color", {10, 20, 30, 0});
    record.AddDouble("Mass", -4.0);
    record.AddDouble("M Uval", -1.0);
    record.AddDouble("r", 1.5);  // y and z missing
    const auto body = Restored(&record);
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->ID(), kNoSystemID);
    EXPECT_EQ(body->Name(), "Planet X");
    EXPECT_EQ(body->TrailColor(), (rgb_color{10, 20, 30, 255}));
    EXPECT_EQ(body->DiscColor(), DEFAULT_TRAIL_DISC_COLOR);
    EXPECT_TRUE(body->TrailOn() && body->DiscOn());
    EXPECT_EQ(body->RelativeTo(), kOriginID);
    EXPECT_EQ(body->M(), 4.0);
    EXPECT_EQ(body->MassUval(), MASS_UVAL_PREF);
    EXPECT_EQ(body->Position(), (ThreeVector{1.5, 0.0, 0.0}));
    EXPECT_EQ(CompositeSystem::Instantiate(&record), nullptr);
}

TEST(CompositeSystem, KeepsChildrenSortedEachIdentifierOnce) {
    const std::unique_ptr<CompositeSystem> group(NewComposite("Group", 100));
    for (const int64 id : {5, 1, 9, 3, 7})
        EXPECT_EQ(group->AddChild(NewBody("b", id, 1.0, {})), B_OK);
    const std::unique_ptr<Body> twin(NewBody("twin", 3, 1.0, {}));
    EXPECT_EQ(group->AddChild(twin.get()), B_OK);
    EXPECT_EQ(twin->Parent(), nullptr);
    EXPECT_EQ(group->IndexOfChild(twin.get()), -1);
    group->RemoveChild(twin.get());
    ASSERT_EQ(group->CountBodies(), 5);
    for (int32 i = 0; i < 5; i++) {
        EXPECT_EQ(group->ChildAt(i)->ID(), 2 * i + 1);
        EXPECT_EQ(group->IndexOfChild(group->ChildAt(i)), i);
    }
    const std::unique_ptr<MassSystem> removed(group->ChildAt(4));
    group->RemoveChild(removed.get());
    EXPECT_EQ(removed->Parent(), nullptr);
    EXPECT_EQ(group->SystemFromID(9), nullptr);
}

TEST(CompositeSystem, DerivesItsQuantitiesFromTheChildren) {
    const auto pair = NewPair();
    EXPECT_EQ(pair->M(), 4.0);
    EXPECT_EQ(pair->Radius(), 2.0);
    EXPECT_EQ(pair->Position(), (ThreeVector{3.0, 0.0, 0.0}));
    EXPECT_EQ(pair->Velocity(), (ThreeVector{0.0, 2.0, 0.0}));
    pair->SetPosition({5.0, 0.0, 0.0});
    EXPECT_EQ(pair->ChildAt(0)->Position().x, 2.0);
    EXPECT_EQ(pair->ChildAt(1)->Position().x, 6.0);
    pair->SetVelocity({0.0, 0.0, 1.0});
    EXPECT_EQ(pair->ChildAt(0)->Velocity(), (ThreeVector{0.0, 6.0, 1.0}));

    const std::unique_ptr<CompositeSystem> empty(NewComposite("Empty", -7));
    EXPECT_EQ(empty->Position(), ThreeVector{});
    EXPECT_EQ(empty->MaxSystemID(), -1);
    empty->AddChild(NewBody("massless", 1, 0.0, {7.0, 0.0, 0.0}));
    EXPECT_TRUE(std::isnan(empty->Position().x));
    empty->SetPosition({5.0, 0.0, 0.0});  // without a centre it cannot be moved
    EXPECT_EQ(empty->ChildAt(0)->Position(), (ThreeVector{7.0, 0.0, 0.0}));
}

TEST(CompositeSystem, CopiesAreDeepAndFree) {
    const std::unique_ptr<CompositeSystem> outer(NewComposite("Outer", 30));
    auto* pair = NewPair().release();
    outer->AddChild(pair);
    const std::unique_ptr<MassSystem> copy(pair->Copy());
    const auto assigned = NewPair();
    assigned->AddChild(NewBody("gone", 50, 1.0, {}));
    *assigned = *pair;
    for (const MassSystem* other : {copy.get(), static_cast<MassSystem*>(assigned.get())}) {
        EXPECT_EQ(DeepArchive(*other), DeepArchive(*pair));
        EXPECT_EQ(other->Parent(), nullptr);
        EXPECT_EQ(other->ChildAt(0)->Parent(), other);
        EXPECT_NE(other->ChildAt(0), pair->ChildAt(0));
    }
}

TEST(CompositeSystem, ArchiveIsAlwaysDeepAndDropsWhatIsNoSystem) {
    const auto pair = NewPair();
    BMessage record, epoch, unknown;
    ASSERT_EQ(pair->Archive(&record, false), B_OK);
    EXPECT_TRUE(FieldNames(record).ends_with(" Bodies*2 class*1 ")) << FieldNames(record);
    epoch.AddString("class", "Epoch");
    unknown.AddString("class", "Comet");
    record.AddMessage("Bodies", &epoch);
    record.AddMessage("Bodies", &unknown);
    record.AddMessage("Bodies", BodyRecord(2));  // a second 2
    record.AddMessage("Bodies", BodyRecord(0));  // out of order
    const auto restored = Restored(&record);
    ASSERT_EQ(restored->CountChildren(), 3);
    EXPECT_EQ(restored->ChildAt(0)->ID(), 0);
    EXPECT_EQ(restored->ChildAt(2)->Name(), "Heavy");
    EXPECT_EQ(restored->ChildAt(2)->Parent(), restored.get());
}

TEST(CompositeSystem, ReadingDropsTooDeepNesting) {
    BMessage record = BodyRecord(9999);
    for (int64 id = 400; id > 0; id--) {
        BMessage outer(FourCC("ARCV"));
        outer.AddInt64("ID", id);
        outer.AddMessage("Bodies", std::move(record));
        outer.AddString("class", "CompositeSystem");
        record = std::move(outer);
    }
    const auto system = Restored(&record);
    ASSERT_NE(system, nullptr);
    EXPECT_EQ(system->MaxSystemID(), 1 + kMaxGroupNesting);
    // And the limit is per archive, not used up.
    EXPECT_EQ(Restored(&record)->MaxSystemID(), 1 + kMaxGroupNesting);
}

TEST(CompositeSystem, AlternatingClassesCannotExhaustTheStack) {
    BMessage record = BodyRecord(1);
    for (int32 i = 0; i < 1200; i++) {
        BMessage group(FourCC("ARCV"));
        group.AddMessage("Bodies", std::move(record));
        group.AddString("class", "CompositeSystem");
        BMessage epoch(FourCC("ARCV"));
        epoch.AddMessage("Root", std::move(group));
        epoch.AddString("class", "Epoch");
        record = std::move(epoch);
    }
    const std::unique_ptr<BArchivable> object(instantiate_object(&record));
    EXPECT_NE(dynamic_cast<Epoch*>(object.get()), nullptr);
}

}  // namespace
