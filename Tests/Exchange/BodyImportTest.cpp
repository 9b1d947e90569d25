#include "Exchange/BodyImport.h"

#include <gtest/gtest.h>

#include "Exchange/BodyReader.h"
#include "Model/Commands/UndoChain.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControlView.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

constexpr const char* kTwoBodies = R"(
group "Pair"
    body "A"
        mass 4 m3/s2
        at 1e9 2 3 m
    body "B"
        at 4 5 6e9 m
        relative "A"
end
body "C"
    at 7 8e9 9 m
)";

class BodyImportTest : public testing::Test {
protected:
    BodyImportTest() { EXPECT_FALSE(document_.Load(PlanetRecord()).Failed()); }

    // What is wrong with it, if anything is.
    std::string Import(const std::string& text, bool replaces = false) {
        ReadBodies bodies;
        auto fault = BodyReader(resources_).Read(text, &bodies);
        if (!fault) fault = import_.Add(bodies.text, kCommandImportBodies, replaces);
        return fault ? fault->Text(resources_) : "";
    }
    // The systems in focus, by name.
    std::string Names() {
        const ReadGuard guard(document_.Portal());
        std::string names;
        for (const MassSystem* system : document_.Portal()->SystemsInIDOrder())
            names += system->Name() + ' ';
        return names;
    }

    ProgramResources resources_;
    RunControlView view_;
    SimulationDocument document_{nullptr};
    RunControl run_{document_.Portal(), document_.GetCalculator(), &view_};
    BodyImport import_{&document_, &run_, &resources_};
};

TEST_F(BodyImportTest, BodiesComeAndGoInOneStepBesideOthersOrInTheirPlace) {
    UndoChain* const history = document_.GetUndoChain();
    const std::string before = Names();
    ASSERT_EQ(Import(kTwoBodies), "");
    EXPECT_EQ(Names(), before + "Pair A B C ");
    EXPECT_EQ(history->UndoName(), int32{kCommandImportBodies});
    history->Undo();
    EXPECT_EQ(Names(), before);
    EXPECT_FALSE(history->CanUndo());
    history->Redo();
    EXPECT_EQ(Names(), before + "Pair A B C ");

    // A second time they would lie upon each other.
    EXPECT_EQ(Import(kTwoBodies), "line 3: \"A\" is at the very place of \"A\"");
    EXPECT_EQ(Names(), before + "Pair A B C ");
    EXPECT_EQ(Import(kTwoBodies, true), "");
    EXPECT_EQ(Names(), "Pair A B C ");
    history->Undo();
    EXPECT_EQ(Names(), before + "Pair A B C ");
}

TEST_F(BodyImportTest, WhatCannotBeLeavesAllAsItWas) {
    const std::string before = Names();
    EXPECT_EQ(Import(""), "there are no bodies in it");
    EXPECT_EQ(Import("body \"A\"\nat 1e300 0 0 AU\nbody \"B\"\nat 1 1 1 m\nmoving 1e306 0 0 km/s"),
              "line 1: a number is out of range");
    EXPECT_EQ(Import("body \"A\"\nat 1 2 3 m\nbody \"B\"\nat 1 2 3 m"),
              "line 1: \"A\" is at the very place of \"B\"");
    EXPECT_EQ(Import("body \"A\"\nat 1 2 3 m\norbit"),
              "line 3: an orbit says itself where the "
              "body is and how it moves");
    EXPECT_EQ(Names(), before);
    EXPECT_FALSE(document_.GetUndoChain()->CanUndo());
}

}  // namespace
