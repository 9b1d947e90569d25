#include "CommandFactory.h"

#include <gtest/gtest.h>

#include <limits>

#include "Body.h"
#include "CompositeSystem.h"
#include "Epoch.h"
#include "EpochFactories.h"
#include "SystemFactories.h"
#include "UndoChain.h"

namespace {

using Quantity = SystemQuantityFactory::Quantity;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class CommandFactoryTest : public testing::Test {
protected:
    CommandFactoryTest() {
        sun_->SetM(100.0);
        sun_->SetPosition({10.0, 0.0, 0.0});
        planet_->SetPosition({13.0, 1.0, 0.0});
        planet_->SetRelativeTo(0);
        moons_->AddChild(moon_);
        for (MassSystem* system :
             {static_cast<MassSystem*>(sun_), static_cast<MassSystem*>(planet_),
              static_cast<MassSystem*>(moons_)})
            epoch_->RootSystem()->AddChild(system);
        root_.AddChild(epoch_);
        portal_.SetEpochTo(epoch_);
    }

    bool Undo() {
        const bool can = chain_.CanUndo();
        chain_.Undo();
        return can;
    }
    // The focus epoch may have become a copy.
    MassSystem* Now(int64 id) { return portal_.FocusEpoch()->SystemFromID(id); }

    UndoChain chain_;
    Epoch root_;
    Epoch* epoch_ = new Epoch;
    Body* sun_ = new Body("Sun", 0, {}, {}, kOriginID);
    Body* planet_ = new Body("Planet", 1, {}, {}, kOriginID);
    CompositeSystem* moons_ = new CompositeSystem("Moons", 2, {}, {}, kOriginID);
    Body* moon_ = new Body("Moon", 3, {}, {}, kOriginID);
    EpochPortal portal_{&chain_, &root_};
};

TEST_F(CommandFactoryTest, EditThatChangesNothingMakesNoStep) {
    portal_.SetSystemFromID(0);
    EXPECT_FALSE(CommitEntry(&portal_, NameFactory(), std::string("Sun")));
    const SystemQuantityFactory mass(Quantity::kMass);
    EXPECT_FALSE(CommitEntry(&portal_, mass, mass.Current(portal_)));
    const SystemVectorFactory position(kPositionQuantity, 1);
    EXPECT_FALSE(CommitEntry(&portal_, position, position.Current(portal_)));
    EXPECT_FALSE(CommitEntry(&portal_, OrderFactory(), epoch_->Order()));
    const EpochTimeFactory time;
    EXPECT_FALSE(CommitEntry(&portal_, time, time.Current(portal_)));
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
    EXPECT_EQ(Now(0)->M(), 100.0);
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
    EXPECT_FALSE(CommitEntry(&portal_, CutoffFactory(), 0.001));
    EXPECT_FALSE(CommitEntry(&portal_, CutoffFactory(), 0.0));
    EXPECT_FALSE(CommitEntry(&portal_, OrderFactory(), 5));
    EXPECT_FALSE(CommitEntry(&portal_, NameFactory(99), std::string("nobody")));
    EXPECT_FALSE(chain_.CanUndo());

    EXPECT_TRUE(
        CommitEntry(&portal_, SystemQuantityFactory(Quantity::kRadius, 0), DimValue{-3.0, 1.0}));
    EXPECT_EQ(Now(0)->Radius(), 3.0);
}

TEST_F(CommandFactoryTest, GroupTakesTheUnitOfAMassButNotAMass) {
    const SystemQuantityFactory mass(Quantity::kMass, 2);
    EXPECT_FALSE(CommitEntry(&portal_, mass, DimValue{5.0, moons_->MassUval()}));
    EXPECT_TRUE(CommitEntry(&portal_, mass, DimValue{5.0, 4.0}));
    EXPECT_EQ(mass.Current(portal_), (DimValue{0.0, 4.0}));
}

TEST_F(CommandFactoryTest, VectorsAreShownRelativeAndStoredAbsolute) {
    const SystemVectorFactory position(kPositionQuantity, 1);
    const double unit = planet_->PositionUval();
    EXPECT_EQ(position.Current(portal_), (DimVector{3.0, 1.0, 0.0, unit}));
    ASSERT_TRUE(CommitEntry(&portal_, position, DimVector{5.0, 5.0, 5.0, unit}));
    EXPECT_EQ(Now(1)->Position(), (ThreeVector{15.0, 5.0, 5.0}));

    ASSERT_TRUE(
        ExecuteFiled(&portal_, position.MakeComponentCommand(&portal_, 1, DimValue{-2.0, unit})));
    EXPECT_EQ(Now(1)->Position(), (ThreeVector{15.0, -2.0, 5.0}));
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
    EXPECT_TRUE(Undo());
    EXPECT_TRUE(Undo());
    EXPECT_TRUE(Undo());
    EXPECT_EQ(Now(1)->Position(), (ThreeVector{13.0, 1.0, 0.0}));

    // A referent that is gone counts as the origin.
    planet_->SetRelativeTo(77);
    EXPECT_EQ(position.Current(portal_), (DimVector{13.0, 1.0, 0.0, unit}));

    // A group without mass has no place that could be typed over, or typed relative to.
    planet_->SetRelativeTo(2);
    for (const int64 id : {1, 2}) {
        const SystemVectorFactory nowhere(kPositionQuantity, id);
        EXPECT_EQ(nowhere.MakeCommand(&portal_, DimVector{1.0, 2.0, 3.0, unit}), nullptr);
        EXPECT_EQ(nowhere.MakeComponentCommand(&portal_, 1, DimValue{5.0, unit}), nullptr);
    }
    SetCompVectorCommand(&portal_, kPositionQuantity, 1, 0, DimValue{5.0, unit}).Execute();
    EXPECT_EQ(Now(1)->Position(), (ThreeVector{13.0, 1.0, 0.0}));
}

// Where the difference to the referent is rounded.
TEST_F(CommandFactoryTest, AnotherUnitKeepsTheBitsOfAVector) {
    const ThreeVector place{0.1, -0.3, 0.7};
    sun_->SetPosition({1e9, 2e9, 3e9});
    planet_->SetPosition(place);
    const SystemVectorFactory position(kPositionQuantity, 1);
    DimVector shown = position.Current(portal_);
    shown.SetUval(1000.0);
    ASSERT_TRUE(CommitEntry(&portal_, position, shown));
    EXPECT_EQ(Now(1)->PositionUval(), 1000.0);
    EXPECT_EQ(Now(1)->Position(), place);
    ASSERT_TRUE(
        ExecuteFiled(&portal_, position.MakeComponentCommand(&portal_, 0, {shown.x, 10.0})));
    EXPECT_EQ(Now(1)->PositionUval(), 10.0);
    EXPECT_EQ(Now(1)->Position(), place);
    // An edit of one component leaves the others alone.
    shown.z += 1e9;
    ASSERT_TRUE(CommitEntry(&portal_, position, shown));
    EXPECT_EQ(Now(1)->Position().y, place.y);
    EXPECT_NE(Now(1)->Position().z, place.z);
}

TEST_F(CommandFactoryTest, EditOfAReadOnlyEpochGoesIntoACopyButItsNameDoesNot) {
    epoch_->SetWriteable(false);
    ASSERT_TRUE(CommitEntry(&portal_, EpochNameFactory(), std::string("Dawn")));
    EXPECT_EQ(portal_.FocusEpoch(), epoch_);
    EXPECT_EQ(epoch_->Name(), "Dawn");

    ASSERT_TRUE(CommitEntry(&portal_, EpochTimeFactory(), DimValue{60.0, 3600.0}));
    EXPECT_NE(portal_.FocusEpoch(), epoch_);
    EXPECT_EQ(portal_.FocusEpoch()->Time(), 60.0);
    EXPECT_EQ(epoch_->Time(), 0.0);
    EXPECT_EQ(epoch_->CountChildren(), 1);
    EXPECT_TRUE(Undo());
    EXPECT_EQ(portal_.FocusEpoch(), epoch_);
    EXPECT_EQ(epoch_->CountChildren(), 0);
}

}  // namespace
