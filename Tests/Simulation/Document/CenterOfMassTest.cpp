#include "Simulation/Document/CenterOfMass.h"

#include <gtest/gtest.h>

#include "Model/Systems/CompositeSystem.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

TEST(CenterOfMass, GroupsAreMovedByTheirBodies) {
    SimulationDocument document(nullptr);
    Epoch epoch;
    // A group without mass has no centre of its own.
    auto* group = new CompositeSystem("Dust", 5, {}, {}, kOriginID);
    group->AddChild(MakeBody("Grain", 6, 0, {3, 0, 0}, {0, 1, 0}).release());
    epoch.RootSystem()->AddChild(group);
    epoch.RootSystem()->AddChild(MakeBody("Rock", 7, 8, {1, 2, 3}, {0, 0, 4}).release());
    ASSERT_FALSE(document.Load(RecordOf({&epoch})).Failed());

    PutCenterOfMassAtOrigin(document.Portal());
    AbEpoch* focus = document.Portal()->FocusEpoch();
    EXPECT_EQ(focus->SystemFromID(7)->Position(), ThreeVector());
    EXPECT_EQ(focus->SystemFromID(7)->Velocity(), ThreeVector());
    EXPECT_EQ(focus->SystemFromID(6)->Position(), (ThreeVector{2, -2, -3}));
    EXPECT_EQ(focus->SystemFromID(6)->Velocity(), (ThreeVector{0, 1, -4}));
}

TEST(CenterOfMass, WithoutMassNothingMoves) {
    const auto grain = MakeBody("Grain", 6, 0, {3, 0, 0}, {0, 1, 0});
    CenterOfMass center{{1, 1, 1}, {}};
    EXPECT_FALSE(FindCenterOfMass({grain.get()}, &center));
    EXPECT_EQ(center.position, (ThreeVector{1, 1, 1}));
}

}  // namespace
