#include "Model/Commands/CommandFactory.h"

#include <gtest/gtest.h>

#include <limits>

#include "Model/Commands/EpochFactories.h"
#include "Model/Commands/SystemFactories.h"
#include "Tests/Model/TestDocument.h"

namespace {

using Quantity = SystemQuantityFactory::Quantity;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The rock is a planet of the Sun here, and there are moons without mass.
class CommandFactoryTest : public testing::Test {
protected:
    CommandFactoryTest() {
        sun_->SetPosition({10.0, 0.0, 0.0});
        planet_->SetPosition({13.0, 1.0, 0.0});
        planet_->SetRelativeTo(0);
        document_.Find(kRootSystemID)->AddChild(NewComposite("Moons", kMoons));
        document_.Find(kMoons)->AddChild(NewBody("Moon", 6, 0.0, {}));
    }

    bool Undo() {
        const bool can = chain_.CanUndo();
        chain_.Undo();
        return can;
    }
    // The focus epoch may have become a copy.
    MassSystem* Now(int64 id) { return document_.Find(id); }

    static constexpr int64 kPlanet = 4, kMoons = 5;
    TestDocument document_;
    EpochPortal& portal_ = document_.portal;
    UndoChain& chain_ = document_.chain;
    Epoch* const epoch_ = document_.genesis;
    MassSystem* const sun_ = Now(0);
    MassSystem* const planet_ = Now(kPlanet);
};

TEST_F(CommandFactoryTest, EditThatChangesNothingMakesNoStep) {
    portal_.SetSystemFromID(0);
    EXPECT_FALSE(CommitEntry(&portal_, NameFactory(), std::string("Sun")));
    const auto commitCurrent = [this](const auto& factory) {
        return CommitEntry(&portal_, factory, factory.Current(portal_));
    };
    EXPECT_FALSE(commitCurrent(SystemQuantityFactory(Quantity::kMass)));
    EXPECT_FALSE(commitCurrent(SystemVectorFactory(kPositionQuantity, kPlanet)));
    EXPECT_FALSE(commitCurrent(OrderFactory()));
    EXPECT_FALSE(commitCurrent(EpochTimeFactory()));
    EXPECT_FALSE(chain_.CanUndo());
}

TEST_F(CommandFactoryTest, QuantityAndUnitAreOneStepAndUnitAloneIsOne) {
    const SystemQuantityFactory mass(Quantity::kMass, 0);
    ASSERT_TRUE(CommitEntry(&portal_, mass, DimValue{250.0, 5.0}));
    EXPECT_EQ(mass.Current(portal_), (DimValue{250.0, 5.0}));
    ASSERT_TRUE(CommitEntry(&portal_, mass, DimValue{250.0, 10.0}));
    EXPECT_EQ(Now(0)->MassUval(), 10.0);
    EXPECT_TRUE(Undo());
    EXPECT_EQ(mass.Current(portal_), (DimValue{250.0, 5.0}));
    EXPECT_TRUE(Undo());
    EXPECT_EQ(sun_->M(), 1024.0);
    EXPECT_FALSE(chain_.CanUndo());
}

TEST_F(CommandFactoryTest, ValuesThatCannotBeTakenAreRefused) {
    for (const double bad : {kNaN, kInfinity, -kInfinity, 1e101, -1e308}) {
        EXPECT_FALSE(
            CommitEntry(&portal_, SystemQuantityFactory(Quantity::kMass, 0), DimValue{bad, 1.0}));
        EXPECT_FALSE(CommitEntry(&portal_, SystemVectorFactory(kVelocityQuantity, 0),
                                 DimVector{0.0, bad, 0.0, 1.0}));
        EXPECT_FALSE(CommitEntry(&portal_, EpochTimeFactory(), DimValue{bad, 1.0}));
        EXPECT_FALSE(CommitEntry(&portal_, CutoffFactory(), bad));
    }
    for (const double bad : {0.001, 0.0})
        EXPECT_FALSE(CommitEntry(&portal_, CutoffFactory(), bad));
    EXPECT_FALSE(CommitEntry(&portal_, OrderFactory(), 25));
    EXPECT_FALSE(CommitEntry(&portal_, NameFactory(99), std::string("nobody")));
    EXPECT_FALSE(chain_.CanUndo());

    EXPECT_TRUE(
        CommitEntry(&portal_, SystemQuantityFactory(Quantity::kRadius, 0), DimValue{-3.0, 1.0}));
    EXPECT_EQ(Now(0)->Radius(), 3.0);
}

TEST_F(CommandFactoryTest, GroupTakesTheUnitOfAMassButNotAMass) {
    const SystemQuantityFactory mass(Quantity::kMass, kMoons);
    EXPECT_FALSE(CommitEntry(&portal_, mass, DimValue{5.0, Now(kMoons)->MassUval()}));
    EXPECT_TRUE(CommitEntry(&portal_, mass, DimValue{5.0, 4.0}));
    EXPECT_EQ(mass.Current(portal_), (DimValue{0.0, 4.0}));
}

TEST_F(CommandFactoryTest, VectorsAreShownRelativeAndStoredAbsolute) {
    const SystemVectorFactory position(kPositionQuantity, kPlanet);
    const double unit = planet_->PositionUval();
    EXPECT_EQ(position.Current(portal_), (DimVector{3.0, 1.0, 0.0, unit}));
    ASSERT_TRUE(CommitEntry(&portal_, position, DimVector{5.0, 5.0, 5.0, unit}));
    EXPECT_EQ(Now(kPlanet)->Position(), (ThreeVector{15.0, 5.0, 5.0}));

    ASSERT_TRUE(
        ExecuteFiled(&portal_, position.MakeComponentCommand(&portal_, 1, DimValue{-2.0, unit})));
    EXPECT_EQ(Now(kPlanet)->Position(), (ThreeVector{15.0, -2.0, 5.0}));
    EXPECT_EQ(position.MakeComponentCommand(&portal_, 1, DimValue{-2.0, unit}), nullptr);
    EXPECT_TRUE(Undo());

    // Another unit leaves alone what is typed before the command comes to be executed.
    DimVector inOther = position.Current(portal_);
    inOther.SetUval(7.0);
    std::unique_ptr<LCommand> command = position.MakeCommand(&portal_, inOther);
    ASSERT_TRUE(
        ExecuteFiled(&portal_, position.MakeComponentCommand(&portal_, 2, DimValue{9.0, unit})));
    ASSERT_TRUE(ExecuteFiled(&portal_, std::move(command)));
    EXPECT_EQ(position.Current(portal_), (DimVector{5.0, 5.0, 9.0, 7.0}));
    while (Undo()) {
    }
    EXPECT_EQ(Now(kPlanet)->Position(), (ThreeVector{13.0, 1.0, 0.0}));

    // A referent that is gone counts as the origin.
    planet_->SetRelativeTo(77);
    EXPECT_EQ(position.Current(portal_), (DimVector{13.0, 1.0, 0.0, unit}));

    // A group without mass has no place that could be typed over, or typed relative to.
    planet_->SetRelativeTo(kMoons);
    for (const int64 id : {kPlanet, kMoons}) {
        const SystemVectorFactory nowhere(kPositionQuantity, id);
        EXPECT_EQ(nowhere.MakeCommand(&portal_, DimVector{1.0, 2.0, 3.0, unit}), nullptr);
        EXPECT_EQ(nowhere.MakeComponentCommand(&portal_, 1, DimValue{5.0, unit}), nullptr);
    }
    SetCompVectorCommand(&portal_, kPositionQuantity, kPlanet, 0, DimValue{5.0, unit}).Execute();
    EXPECT_EQ(Now(kPlanet)->Position(), (ThreeVector{13.0, 1.0, 0.0}));
}

// Where the difference to the referent is rounded.
TEST_F(CommandFactoryTest, AnotherUnitKeepsTheBitsOfAVector) {
    const ThreeVector place{0.1, -0.3, 0.7};
    sun_->SetPosition({1e9, 2e9, 3e9});
    planet_->SetPosition(place);
    const SystemVectorFactory position(kPositionQuantity, kPlanet);
    DimVector shown = position.Current(portal_);
    shown.SetUval(1000.0);
    ASSERT_TRUE(CommitEntry(&portal_, position, shown));
    EXPECT_EQ(Now(kPlanet)->PositionUval(), 1000.0);
    EXPECT_EQ(Now(kPlanet)->Position(), place);
    ASSERT_TRUE(
        ExecuteFiled(&portal_, position.MakeComponentCommand(&portal_, 0, {shown.x, 10.0})));
    EXPECT_EQ(Now(kPlanet)->PositionUval(), 10.0);
    EXPECT_EQ(Now(kPlanet)->Position(), place);
    // An edit of one component leaves the others alone.
    shown.z += 1e9;
    ASSERT_TRUE(CommitEntry(&portal_, position, shown));
    EXPECT_EQ(Now(kPlanet)->Position().y, place.y);
    EXPECT_NE(Now(kPlanet)->Position().z, place.z);
}

TEST_F(CommandFactoryTest, EditOfAReadOnlyEpochGoesIntoACopyButItsNameDoesNot) {
    epoch_->SetWriteable(false);
    ASSERT_TRUE(CommitEntry(&portal_, EpochNameFactory(), std::string("Dawn")));
    EXPECT_EQ(portal_.FocusEpoch(), epoch_);
    EXPECT_EQ(epoch_->Name(), "Dawn");
    ASSERT_TRUE(CommitEntry(&portal_, EpochTimeFactory(), DimValue{60.0, 3600.0}));
    EXPECT_EQ(portal_.FocusEpoch()->Parent(), epoch_);
    EXPECT_EQ(portal_.FocusEpoch()->Time(), 60.0);
    EXPECT_EQ(epoch_->Time(), 0.0);
    EXPECT_TRUE(Undo());
    EXPECT_EQ(epoch_->CountChildren(), 0);
}

}  // namespace
