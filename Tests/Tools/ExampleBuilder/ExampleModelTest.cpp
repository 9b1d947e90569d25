#include "ExampleModel.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Epoch.h"
#include "MassSystem.h"

namespace {

constexpr double kSun = 1.3271244e20;  // m3/s2

ExampleSystem Body(const std::string& name, double mass) {
    ExampleSystem body;
    body.name = name;
    body.mass = mass;
    return body;
}

ExampleSystem Around(ExampleSystem system, const std::string& centre, double distance) {
    system.orbit = ExampleOrbit{centre, {}};
    system.orbit->elements.semiMajorAxis = distance;
    return system;
}

ExampleSystem Group(const std::string& name, std::vector<ExampleSystem> members) {
    ExampleSystem group;
    group.kind = ExampleSystem::Kind::kGroup;
    group.name = name;
    group.line = 77;
    group.members = std::move(members);
    return group;
}

std::string Fault(std::vector<ExampleSystem> systems, const std::string& focus = "") {
    ExampleText text;
    text.systems = std::move(systems);
    text.focus = focus;
    text.focusLine = 5;
    ExampleModel model;
    if (model.Build(text) != nullptr) return "nothing";
    return std::to_string(model.Line()) + ": " + model.Reason();
}

TEST(ExampleModel, GroupsGoAroundWithTheirCentreOfMass) {
    ExampleText text;
    text.time = 5.0;
    text.cutoff = 1e-9;
    text.order = 3;
    text.centred = false;
    ExampleSystem pair = Around(
        Group("Pair", {Body("Big", 3e14), Around(Body("Small", 1e14), "Big", 1e9)}), "Sun", 1e11);
    pair.relativeTo = "Sun";
    ExampleSystem sun = Body("Sun", kSun);
    sun.velocity = ThreeVector{0.0, 7.0, 0.0};
    text.systems = {sun, pair};
    text.focus = "Small";
    ExampleModel model;
    const std::unique_ptr<Epoch> epoch = model.Build(text);
    ASSERT_NE(epoch, nullptr) << model.Reason();
    EXPECT_EQ(epoch->Time(), 5.0);
    EXPECT_EQ(epoch->Cutoff(), 1e-9);
    EXPECT_EQ(epoch->Order(), 3);
    EXPECT_FALSE(epoch->COMOnGo());

    // Identifiers in the order of the text.
    const MassSystem* const group = epoch->SystemFromID(1);
    const MassSystem* const big = epoch->SystemFromID(2);
    const MassSystem* const small = epoch->SystemFromID(3);
    ASSERT_TRUE(group != nullptr && big != nullptr && small != nullptr);
    EXPECT_EQ(small->Name(), "Small");
    EXPECT_EQ(small->Parent(), group);
    EXPECT_EQ(group->RelativeTo(), 0);
    EXPECT_EQ(model.FocusID(), 3);

    // The whole circles the Sun with all three masses; inside, the small one the big one.
    EXPECT_NEAR(group->Position().x, 1e11, 1e-3);
    EXPECT_NEAR(group->Velocity().y, 7.0 + std::sqrt((kSun + 4e14) / 1e11), 1e-9);
    EXPECT_NEAR((small->Position() - big->Position()).x, 1e9, 1e-3);
    EXPECT_NEAR((small->Velocity() - big->Velocity()).y, std::sqrt(4e14 / 1e9), 1e-9);
}

TEST(ExampleModel, ClustersAreBodiesOfOneMass) {
    ExampleSystem cluster = Body("Star", 100.0);
    cluster.kind = ExampleSystem::Kind::kCluster;
    cluster.stars = 50;
    cluster.length = 1.0;
    cluster.radius = 2.0;
    ExampleSystem group = Group("Cluster", {cluster});
    group.position = ThreeVector{1.0, 2.0, 3.0};
    group.velocity = ThreeVector{};
    ExampleText text;
    text.systems = {group};
    ExampleModel model;
    const std::unique_ptr<Epoch> epoch = model.Build(text);
    ASSERT_NE(epoch, nullptr) << model.Reason();
    const MassSystem* const built = epoch->RootSystem()->ChildAt(0);
    ASSERT_EQ(built->CountChildren(), 50);
    EXPECT_EQ(built->ChildAt(49)->Name(), "Star 50");
    EXPECT_EQ(built->ChildAt(0)->M(), 2.0);
    EXPECT_EQ(built->ChildAt(0)->Radius(), 2.0);
    EXPECT_NEAR(built->Position().z, 3.0, 1e-14);
    EXPECT_NEAR(built->Velocity().x, 0.0, 1e-14);
}

TEST(ExampleModel, SaysWhatCannotBe) {
    EXPECT_EQ(Fault({Body("A", 1.0), Body("A", 1.0)}), "0: there is a system \"A\" already");
    EXPECT_EQ(Fault({Body("A", 1.0)}, "B"), "5: there is no system \"B\"");
    EXPECT_EQ(Fault({Around(Body("A", 1.0), "B", 1.0), Body("B", 1.0)}),
              "0: no system \"B\" stands above it in the same group");
    EXPECT_EQ(Fault({Body("A", 1.0), Group("G", {Around(Body("B", 1.0), "A", 1.0)})}),
              "0: no system \"A\" stands above it in the same group");
    EXPECT_EQ(Fault({Body("A", 0.0), Around(Body("B", 1.0), "A", 1.0)}),
              "0: \"A\" has no mass to orbit");
    ExampleSystem empty = Group("G", {});
    empty.position = ThreeVector{};
    EXPECT_EQ(Fault({empty}), "77: a group without mass has no centre to be placed by");
    ExampleSystem alone = Body("A", 1.0);
    alone.relativeTo = "A";
    EXPECT_EQ(Fault({alone}), "0: no system \"A\" stands above it");
    ExampleSystem cluster = Body("A", 1.0);
    cluster.kind = ExampleSystem::Kind::kCluster;
    EXPECT_EQ(Fault({cluster}), "0: a cluster needs its stars, its mass and its length");
}

}  // namespace
