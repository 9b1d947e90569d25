#include "Exchange/ExampleModel.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Exchange/ExampleParser.h"
#include "Exchange/PlummerSphere.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/MassSystem.h"
#include "Model/Systems/OrbitalElements.h"
#include "Simulation/Document/ProgramResources.h"

namespace {

class ExampleModelTest : public testing::Test {
protected:
    // Null if the model cannot be; the text as such must be right.
    std::unique_ptr<Epoch> Build(const std::string& systems) {
        ExampleText text;
        EXPECT_TRUE(parser_.Parse("epoch \"E\"\n" + systems, &text)) << parser_.Reason();
        return model_.Build(text);
    }

    ProgramResources resources_;
    ExampleParser parser_{resources_};
    ExampleModel model_{resources_};
};

TEST_F(ExampleModelTest, GroupsGoAroundWithTheirCentreOfMass) {
    const std::unique_ptr<Epoch> epoch = Build(R"(
        time 5 s
        cutoff 1e-9
        order 3
        centred no
        focus "Small"
        body "Sun"
            mass 1.3271244e20 m3/s2
            at 0 0 0 m
            moving 0 7 0 m/s
        group "Pair"
            orbit "Sun" a 1e11 m
            relative "Sun"
            body "Big"
                mass 3e14 m3/s2
            body "Small"
                mass 1e14 m3/s2
                orbit "Big" a 1e9 m
        end)");
    ASSERT_NE(epoch, nullptr) << model_.Reason();
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
    EXPECT_EQ(model_.Chosen().focus, 3);

    // The whole circles the Sun with all three masses; inside, the small one the big one.
    EXPECT_NEAR(group->Position().x, 1e11, 1e-3);
    EXPECT_NEAR(group->Velocity().y, 7.0 + std::sqrt((1.3271244e20 + 4e14) / 1e11), 1e-9);
    EXPECT_NEAR((small->Position() - big->Position()).x, 1e9, 1e-3);
    EXPECT_NEAR((small->Velocity() - big->Velocity()).y, std::sqrt(4e14 / 1e9), 1e-9);
}

TEST_F(ExampleModelTest, ClustersAreBodiesOfOneMass) {
    const std::unique_ptr<Epoch> epoch = Build(R"(
        group "Cluster"
            at 1 2 3 m
            moving 0 0 0 m/s
            cluster "Star"
                stars 50
                mass 100 m3/s2
                length 1 m
                radius 2 m
                seed 5
        end)");
    ASSERT_NE(epoch, nullptr) << model_.Reason();
    const MassSystem* const built = epoch->RootSystem()->ChildAt(0);
    ASSERT_EQ(built->CountChildren(), 50);
    EXPECT_EQ(built->ChildAt(49)->Name(), "Star 50");
    EXPECT_EQ(built->ChildAt(0)->M(), 2.0);
    EXPECT_EQ(built->ChildAt(0)->Radius(), 2.0);
    EXPECT_NEAR(built->Position().z, 3.0, 1e-14);
    EXPECT_NEAR(built->Velocity().x, 0.0, 1e-14);
    const auto stars = PlummerSphere(50, 100.0, 1.0, 5);
    EXPECT_NEAR((built->ChildAt(1)->Position() - built->ChildAt(0)->Position()).x,
                (stars[1].position - stars[0].position).x, 1e-14);
}

TEST_F(ExampleModelTest, ColdClustersHaveAPartOfTheSpeeds) {
    const std::unique_ptr<Epoch> epoch = Build(R"(
        cluster "Star"
            stars 5
            mass 100 m3/s2
            length 1 m
            speeds 0.1
            seed 5)");
    ASSERT_NE(epoch, nullptr) << model_.Reason();
    const auto stars = PlummerSphere(5, 100.0, 1.0, 5);
    EXPECT_EQ(epoch->RootSystem()->ChildAt(4)->Velocity(), 0.1 * stars[4].velocity);
    EXPECT_EQ(epoch->RootSystem()->ChildAt(4)->Position(), stars[4].position);
}

TEST_F(ExampleModelTest, BeltsAreMasslessBodiesFromOneOrbitToAnother) {
    const std::unique_ptr<Epoch> epoch = Build(R"(
        body "Star"
            mass 1e20 m3/s2
        belt "Rock"
            bodies 11
            seed 3
            radius 2 m
            orbit "Star" a 1e11 m e 0.1
            outer 2e11 m)");
    ASSERT_NE(epoch, nullptr) << model_.Reason();
    const MassSystem* const root = epoch->RootSystem();
    ASSERT_EQ(root->CountChildren(), 12);
    double longitudes = 0.0;
    for (int32 i = 1; i <= 11; i++) {
        const MassSystem* const rock = root->ChildAt(i);
        EXPECT_EQ(rock->Name(), "Rock " + std::to_string(i));
        EXPECT_EQ(rock->M(), 0.0);
        const OrbitalElements orbit = ElementsOf({rock->Position(), rock->Velocity()}, 1e20);
        EXPECT_NEAR(orbit.SemiMajorAxis(), 1e11 + 1e10 * (i - 1), 1e3);
        EXPECT_NEAR(orbit.eccentricity, 0.1, 1e-12);
        longitudes += rock->Position().x / Length(rock->Position());
    }
    EXPECT_LT(std::abs(longitudes), 9.0) << "they stand on all sides";
}

TEST_F(ExampleModelTest, SaysWhatCannotBe) {
    const std::pair<const char*, const char*> faults[] = {
        {"body \"A\"\nbody \"A\"\nfocus \"A\"", "4: several systems are called \"A\""},
        {"body \"A\"\nfocus \"B\"", "3: there is no system \"B\""},
        {"body \"A\"\norbit \"B\" a 1 m\nbody \"B\"\nmass 1 kg",
         "2: no system \"B\" stands above it in the same group"},
        {"body \"A\"\nmass 1 kg\ngroup \"G\"\nbody \"B\"\norbit \"A\" a 1 m\nend",
         "5: no system \"A\" stands above it in the same group"},
        {"body \"A\"\nbody \"B\"\norbit \"A\" a 1 m", "3: \"A\" has no mass to orbit"},
        {"group \"G\"\nat 0 0 0 m\nend", "2: a group without mass has no centre to be placed by"},
        {"body \"A\"\nrelative \"A\"", "2: there is no other system \"A\""},
        {"cluster \"A\"\nmass 1 kg", "2: a cluster needs its stars, its mass and its length"}};
    for (const auto& [systems, fault] : faults) {
        EXPECT_EQ(Build(systems), nullptr) << systems;
        EXPECT_EQ(std::to_string(model_.Line()) + ": " + model_.Reason(), fault);
    }
}

}  // namespace
