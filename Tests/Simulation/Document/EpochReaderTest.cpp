#include "Simulation/Document/EpochReader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <numeric>

#include "Model/Epochs/EpochCursor.h"
#include "Model/Systems/CompositeSystem.h"
#include "Platform/Application/AppDefs.h"
#include "Simulation/Document/ProgramResources.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

BMessage SystemRecord(const MassSystem& system) {
    BMessage record(B_ARCHIVED_OBJECT);
    EXPECT_EQ(system.Archive(&record), B_OK);
    return record;
}

// A body's record, without an identifier if there is none.
BMessage BodyRecord(const char* name, int64 id) {
    BMessage record = SystemRecord(*MakeBody(name, id, 1.0, {}, {}));
    if (id == kNoSystemID) record.RemoveName("ID");
    return record;
}

BMessage GroupRecord(const char* name, int64 id, const std::vector<BMessage>& members) {
    BMessage record = SystemRecord(CompositeSystem(name, id, {}, {}, kOriginID));
    for (const BMessage& member : members)
        record.AddMessage("Bodies", &member);
    return record;
}

BMessage EpochRecord(const char* name, const std::vector<BMessage>& systems,
                     const std::vector<BMessage>& children = {}) {
    Epoch epoch;
    epoch.SetName(name);
    BMessage record(B_ARCHIVED_OBJECT);
    EXPECT_EQ(epoch.Archive(&record, false), B_OK);
    record.RemoveName("Root");
    const BMessage root = GroupRecord("Root system", kRootSystemID, systems);
    record.AddMessage("Root", &root);
    for (const BMessage& child : children)
        record.AddMessage("Children", &child);
    return record;
}

BMessage DocumentOf(const BMessage& epoch) {
    BMessage record;
    record.AddMessage("Epochs", &epoch);
    return record;
}

class EpochReaderTest : public testing::Test {
protected:
    DocumentError Load(const BMessage& epoch, int32 focus = 0) {
        BMessage record = DocumentOf(epoch);
        record.AddInt32("Cur Epoch", focus);
        return document_.Load(record);
    }
    std::string Told() const {
        std::string told;
        for (const std::string& line : document_.Notices().Lines(resources_))
            told += line + '\n';
        return told;
    }
    // Names and identifiers in the focus epoch.
    std::string Systems() {
        std::string text;
        for (const MassSystem* system : document_.Portal()->SystemsInIDOrder())
            text += system->Name() + std::to_string(system->ID()) + ' ';
        return text;
    }

    ProgramResources resources_;
    SimulationDocument document_{nullptr};
};

TEST_F(EpochReaderTest, ABadEpochCostsItselfAndNothingElse) {
    struct Case {
        std::vector<BMessage> systems;
        const char* reason;
    };
    BMessage falling = BodyRecord("Comet", 1);
    falling.ReplaceDouble("Mass", kNaN);
    BMessage cutOff = BodyRecord("Comet", 1);
    cutOff.RemoveName("class");
    const std::byte noRecord[30] = {};
    cutOff.AddData("Inner", B_MESSAGE_TYPE, noRecord, sizeof noRecord, false);
    const Case cases[] = {
        {{falling}, "the mass of body \"Comet\" is not a finite number"},
        {{BodyRecord("Comet", kOriginID)}, "the identifier of body \"Comet\" is a reserved one"},
        {{BodyRecord("Comet", kRootSystemID)},
         "the identifier of body \"Comet\" is a reserved one"},
        {{BodyRecord("Comet", std::numeric_limits<int64>::min())},
         "the identifier of body \"Comet\" is a reserved one"},
        {{BodyRecord("Comet", std::numeric_limits<int64>::max())},
         "the identifier of body \"Comet\" is too large"},
        {{GroupRecord("A", 2, {BodyRecord("Star", 1)}),
          GroupRecord("B", 3, {BodyRecord("Comet", 1)})},
         "body \"Comet\" has the identifier of another one"},
        {{GroupRecord("Star", 2, {BodyRecord("Comet", 2)})},
         "body \"Comet\" has the identifier of another one"},
        {{cutOff}, "the document is cut off or damaged"},
    };
    for (const auto& [systems, reason] : cases) {
        const BMessage last = EpochRecord("Last", {BodyRecord("Star", 7)});
        const BMessage bad = EpochRecord("Bad", systems, {last});
        const BMessage next = EpochRecord("Next", {BodyRecord("Star", 7)});
        ASSERT_FALSE(Load(EpochRecord("First", {BodyRecord("Star", 7)}, {bad, next}), 2).Failed());
        EXPECT_EQ(Outline(document_.Root()), "First(Bad(Last) Next)");
        EXPECT_EQ(document_.Portal()->FocusEpoch()->Name(), "Last") << "the same position";
        EXPECT_EQ(Systems(), "Star7 ");
        EXPECT_EQ(document_.Root()->ChildAt(0)->ChildAt(0)->RootSystem()->CountChildren(), 0);
        EXPECT_EQ(Told(), "epoch 1, \"Bad\", is left empty: " + std::string(reason) + '\n');

        const DocumentError alone = Load(EpochRecord("Bad", systems));
        EXPECT_TRUE(alone.Failed());
        EXPECT_EQ(alone.Reason(resources_), reason);
        EXPECT_EQ(Outline(document_.Root()), "First(Bad(Last) Next)") << "nothing has changed";
    }
}

TEST_F(EpochReaderTest, AnEpochWhoseRecordIsDamagedKeepsItsPosition) {
    BMessage first = EpochRecord("First", {BodyRecord("Star", 7)});
    const std::byte noRecord[30] = {};
    first.AddData("Children", B_MESSAGE_TYPE, noRecord, sizeof noRecord, false);
    const BMessage next = EpochRecord("Next", {BodyRecord("Star", 7)});
    first.AddMessage("Children", &next);
    ASSERT_FALSE(Load(first, 2).Failed());
    EXPECT_EQ(document_.Portal()->FocusEpoch()->Name(), "Next");
    EXPECT_NE(Told().find("cut off or damaged"), std::string::npos);
}

TEST_F(EpochReaderTest, ARecordThatIsNoEpochKeepsItsPositionAndItsChildren) {
    const BMessage last = EpochRecord("Last", {BodyRecord("Star", 7)});
    BMessage strange = EpochRecord("Strange", {BodyRecord("Star", 7)}, {last});
    strange.RemoveName("class");
    strange.AddString("class", "Another");
    const BMessage next = EpochRecord("Next", {BodyRecord("Star", 7)});
    ASSERT_FALSE(Load(EpochRecord("First", {BodyRecord("Star", 7)}, {strange, next}), 2).Failed());
    EXPECT_EQ(Outline(document_.Root()), "First(Strange(Last) Next)");
    EXPECT_EQ(Told(), "epoch 1, \"Strange\", is left empty: the document is cut off or damaged\n");
}

TEST_F(EpochReaderTest, WhatIsLeftOutOrGetsANewIdentifierIsTold) {
    ASSERT_FALSE(Load(EpochRecord("E", {BodyRecord("Earth", 3), BodyRecord("New", kNoSystemID),
                                        GroupRecord("Trojans", 3, {BodyRecord("Hector", 4)}),
                                        GroupRecord("Jupiter", 8,
                                                    {BodyRecord("Io", kNoSystemID),
                                                     BodyRecord("Leda", kNoSystemID),
                                                     BodyRecord("Thebe", 9)})}))
                     .Failed());
    EXPECT_EQ(Systems(), "Earth3 Jupiter8 Thebe9 New10 Io11 Leda12 ");
    EXPECT_EQ(Told(),
              "epoch 0, \"E\": \"Trojans\" is left out, its identifier is that of \"Earth\"\n"
              "epoch 0, \"E\": \"New\" has no identifier, and gets the new one 10\n"
              "epoch 0, \"E\": \"Io\" has no identifier, and gets the new one 11\n"
              "epoch 0, \"E\": \"Leda\" has no identifier, and gets the new one 12\n");

    // What is no system is told once for each epoch, wherever in it it stands.
    BMessage trail = BodyRecord("Trail", 5);
    trail.RemoveName("class");
    trail.AddString("class", "Trail");
    const BMessage inner = EpochRecord("Inner", {trail});
    ASSERT_FALSE(
        Load(EpochRecord("E", {BodyRecord("Earth", 3), GroupRecord("Mars", 4, {trail, trail})},
                         {inner}))
            .Failed());
    EXPECT_EQ(Systems(), "Earth3 Mars4 ");
    EXPECT_EQ(
        Told(),
        "epoch 0, \"E\": what is neither body nor group is left out: 2 (the first is of class "
        "\"Trail\")\n"
        "epoch 1, \"Inner\": what is neither body nor group is left out: 1 (the first is of "
        "class \"Trail\")\n");

    // Many of a kind in one line; and no identifier is above the largest one.
    std::vector<BMessage> many(100, BodyRecord("Twin", kMaxSystemID));
    many.resize(110, BodyRecord("Foundling", kNoSystemID));
    ASSERT_FALSE(Load(EpochRecord("E", many)).Failed());
    EXPECT_NE(Told().find("96 more are left out"), std::string::npos) << Told();
    EXPECT_NE(Told().find("7 more have no identifier"), std::string::npos);
    EXPECT_EQ(document_.Portal()->FocusEpoch()->MaxSystemID(), kMaxSystemID);
    EXPECT_EQ(document_.Portal()->SystemsInIDOrder().size(), 11u);
}

// A list that is inserted one by one takes a time that grows with its square.
TEST_F(EpochReaderTest, BodiesMayStandInAnyOrder) {
#ifdef ORVEK_SANITIZED
    constexpr int64 kBodies = 30'000;
#else
    constexpr int64 kBodies = 100'000;
#endif
    const auto secondsFor = [this](bool falls) {
        BMessage record = BodyRecord("Grain", 0);
        std::vector<BMessage> bodies;
        for (int64 i = 0; i < kBodies; i++) {
            record.ReplaceInt64("ID", falls ? kBodies - i : i);
            bodies.push_back(record);
        }
        BMessage stored;
        std::vector<std::byte> bytes;
        EXPECT_EQ(DocumentOf(EpochRecord("E", bodies)).Flatten(&bytes), B_OK);
        EXPECT_EQ(stored.Unflatten(bytes.data(), bytes.size()), B_OK);
        double best = 1e9;
        for (int i = 0; i < 3; i++) {
            const auto start = std::chrono::steady_clock::now();
            EXPECT_FALSE(document_.Load(stored).Failed());
            const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
            best = std::min(best, took.count());
        }
        return best;
    };
    const double rising = secondsFor(false);
    EXPECT_LT(secondsFor(true), 3.0 * rising + 0.05);
    EXPECT_EQ(document_.Portal()->FocusEpoch()->RootSystem()->CountChildren(), kBodies);
}

}  // namespace
