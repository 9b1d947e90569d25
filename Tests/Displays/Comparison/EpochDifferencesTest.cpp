#include "Displays/Comparison/EpochDifferences.h"

#include <gtest/gtest.h>

#include "Tests/Displays/TestDocument.h"

namespace {

class EpochDifferencesTest : public testing::Test {
protected:
    void SetUp() override { root_.AddChild(start_); }

    // An epoch below another one: a copy that can be edited.
    static Epoch* CopyBelow(Epoch* parent) {
        auto* const copy = static_cast<Epoch*>(parent->Copy());
        parent->AddChild(copy);
        return copy;
    }
    static Epoch* RunBelow(Epoch* parent) {
        Epoch* const run = CopyBelow(parent);
        run->SetTime(parent->Time() + 1000.0);
        for (int32 i = 0; i < run->RootSystem()->CountChildren(); i++)
            run->RootSystem()->ChildAt(i)->SetPosition({1.0 * i, 2.0, 3.0});
        run->SetWriteable(false);
        return run;
    }
    static Body* BodyOf(Epoch* epoch, int64 id) {
        return static_cast<Body*>(epoch->SystemFromID(id));
    }
    static void PutCenterAtOrigin(Epoch* epoch) {
        MassSystem* const all = epoch->RootSystem();
        const ThreeVector place = all->Position(), speed = all->Velocity();
        for (int32 i = 0; i < all->CountChildren(); i++) {
            MassSystem* const body = all->ChildAt(i);
            body->SetPosition(body->Position() - place);
            body->SetVelocity(body->Velocity() - speed);
        }
    }
    std::string Describe(const Epoch* one, const Epoch* other) const {
        return DescribeDifferences({one, "one"}, {other, "other"}, starts_, TestContext());
    }

    BranchStarts starts_;
    Epoch root_;
    Epoch* const start_ = MakePlanetEpoch("Start").release();
};

}  // namespace

TEST_F(EpochDifferencesTest, OfTwoRunsFromOneEpochIsANewStartAlone) {
    const Epoch* const first = RunBelow(RunBelow(start_));
    const Epoch* const second = RunBelow(start_);
    const std::string text = Describe(first, second);
    EXPECT_NE(text.find("Nothing was edited"), std::string::npos) << text;
    EXPECT_EQ(Describe(first, second->Parent() == start_ ? start_ : nullptr), text);
}

// Against the moment that it began with, to the bit; what a coordinate has by rounding is none.
TEST_F(EpochDifferencesTest, ABranchIsTheMomentOfARunUntilItIsEdited) {
    Epoch* const run = RunBelow(start_);
    Epoch* const moment = RunBelow(start_);
    Epoch* const branch = CopyBelow(start_);
    branch->SetTime(moment->Time());
    starts_[branch].reset(static_cast<const AbEpoch*>(moment->Copy()));
    for (int64 id = 0; id < 4; id++) {
        BodyOf(branch, id)->SetPosition(BodyOf(moment, id)->Position());
        BodyOf(branch, id)->SetVelocity(BodyOf(moment, id)->Velocity());
    }
    branch->SetWriteable(false);
    EXPECT_NE(Describe(run, branch).find("Nothing was edited"), std::string::npos)
        << Describe(run, branch);
    Body* const body = BodyOf(branch, 1);
    body->SetVelocity(body->Velocity() + ThreeVector{0.0, 1700.0, 2e-14});
    const std::string text = Describe(run, RunBelow(branch));
    EXPECT_NE(text.find("the velocity was changed by 0; 1.7; 0 km/s"), std::string::npos) << text;
}

TEST_F(EpochDifferencesTest, AreTheEditsSinceTheEpochsParted) {
    const Epoch* const run = RunBelow(start_);
    Epoch* const edited = CopyBelow(start_);
    const int64 planet = edited->RootSystem()->ChildAt(1)->ID();
    const int64 moon = edited->RootSystem()->ChildAt(2)->ID();
    const std::string gone = BodyOf(edited, moon)->Name();
    Body* const body = BodyOf(edited, planet);
    body->SetM(2.0 * body->M());
    body->SetPosition(body->Position() + ThreeVector{0.5, 0.0, 0.0});
    body->SetVelocity(body->Velocity() + ThreeVector{0.0, 1000.0, 0.0});
    body->SetName("Dune");
    const std::unique_ptr<MassSystem> doomed(BodyOf(edited, moon));
    edited->RootSystem()->RemoveChild(doomed.get());
    edited->RootSystem()->AddChild(MakeBody("Comet", 99, 0.0, {1e11, 0, 0}, {}).release());
    edited->SetOrder(16);
    edited->SetOnContact(kContactPasses);
    const std::string text = Describe(run, RunBelow(edited));
    for (const char* const line :
         {"on the way to other:", "renamed to Dune", "Dune: Mass: ",
          "Dune was moved by 0.5; 0; 0 m", "Dune: the velocity was changed by 0; 1; 0 km/s",
          "Comet was added", "Order: 16 instead of 4", "touch: they pass instead of they merge"})
        EXPECT_NE(text.find(line), std::string::npos) << line << '\n' << text;
    EXPECT_NE(text.find(gone + " was removed"), std::string::npos) << text;
    // What a branch from a run begins with: the center of mass at the origin, which moves all.
    EXPECT_EQ(text.find("center of mass"), std::string::npos) << text;
    Epoch* const centered = CopyBelow(start_);
    PutCenterAtOrigin(centered);
    EXPECT_EQ(Describe(run, centered),
              "Since they parted, on the way to other:\n"
              "    The center of mass was put at the origin\n\n");
    // What ran did nothing else.
    EXPECT_EQ(text.find("on the way to one:"), std::string::npos) << text;
}
