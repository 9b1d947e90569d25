#include "Simulation/Document/SimulationDocument.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <optional>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/NewEpochCommand.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Platform/TestFolder.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

std::string FieldNames(const BMessage& record) {
    std::string names, name;
    for (int32 i = 0; record.GetInfo(B_ANY_TYPE, i, &name, nullptr) == B_OK; i++)
        names += name + ", ";
    return names;
}

// Epochs of the earlier layout, by their identifiers and those of what they were copied from.
BMessage FlatRecord(const std::vector<std::pair<int64, std::optional<int64>>>& epochs) {
    BMessage record;
    for (const auto& [id, copyOf] : epochs) {
        BMessage archive;
        Epoch epoch;
        epoch.SetName(std::to_string(id));
        EXPECT_EQ(epoch.Archive(&archive, false), B_OK);
        archive.AddInt64("Epoch ID", id);
        if (copyOf) archive.AddInt64("Copy of", *copyOf);
        record.AddMessage("Epochs", &archive);
    }
    return record;
}

std::string OutlineOf(const BMessage& record) {
    SimulationDocument document(nullptr);
    EXPECT_FALSE(document.Load(record).Failed());
    return Outline(document.Root());
}

// Genesis with the children Left and Right, the focus on Right.
void LoadTree(SimulationDocument* document) {
    auto genesis = MakePlanetEpoch("Genesis");
    genesis->AddChild(MakePlanetEpoch("Left").release());
    genesis->AddChild(MakePlanetEpoch("Right").release());
    BMessage record = RecordOf({genesis.get()});
    record.AddInt32("Cur Epoch", 2);
    record.AddBool("Cur Ep Writ", false);
    record.AddInt64("Cur Sys", 3);
    ASSERT_FALSE(document->Load(record).Failed());
}

TEST(SimulationDocument, TreeAndFocusSurviveStoring) {
    SimulationDocument document(nullptr);
    LoadTree(&document);
    BMessage record;
    ASSERT_FALSE(document.Store(&record, true).Failed());
    int32 position = 0;
    ASSERT_EQ(record.FindInt32("Cur Epoch", &position), B_OK);
    EXPECT_EQ(position, 2);
    BMessage epoch;
    ASSERT_EQ(record.FindMessage("Epochs", &epoch), B_OK);
    EXPECT_EQ(epoch.what, FourCC("ARCV"));

    SimulationDocument again(nullptr);
    ASSERT_FALSE(again.Load(record).Failed());
    EXPECT_EQ(Outline(again.Root()), "Genesis(Left Right)");
    EXPECT_EQ(again.Portal()->FocusEpoch()->Name(), "Right");
    EXPECT_FALSE(again.Portal()->FocusEpoch()->Writeable());
    EXPECT_EQ(again.Portal()->FocusSystem()->Name(), "Probe");
    BMessage second;
    ASSERT_FALSE(again.Store(&second, true).Failed());
    EXPECT_EQ(second, record);
}

TEST(SimulationDocument, AnEpochStoredAloneKeepsItsNameAndWhetherItIsARecord) {
    for (const bool writeable : {false, true}) {
        SimulationDocument document(nullptr);
        LoadTree(&document);
        AbEpoch* const copy = document.Portal()->FocusEpoch()->Copy();
        document.Portal()->FocusEpoch()->AddChild(copy);
        document.Portal()->SetEpochTo(copy);
        copy->SetWriteable(writeable);
        BMessage record;
        ASSERT_FALSE(document.Store(&record, false).Failed());
        EXPECT_TRUE(copy->NameFromParent());

        BMessage epoch;
        bool isWriteable = !writeable;
        ASSERT_EQ(record.FindMessage("Epochs", &epoch), B_OK);
        ASSERT_EQ(epoch.FindBool("Writ", &isWriteable), B_OK);
        EXPECT_EQ(isWriteable, writeable);
        SimulationDocument again(nullptr);
        ASSERT_FALSE(again.Load(record).Failed());
        EXPECT_EQ(Outline(again.Root()), "Right");
    }
}

TEST(SimulationDocument, FieldsComeInTheirOrder) {
    SimulationDocument document(nullptr);
    LoadTree(&document);
    BMessage display;
    display.AddDouble("Scale", 1e-9);
    BMessage record = PlanetRecord();
    record.AddPoint("Save at", {1, 2});
    record.AddFloat("Epoch W", 19.5f);
    record.AddInt32("Disp type", 1);
    record.AddMessage("Displays", &display);
    record.AddString("Edit at", "of the wrong type");
    record.AddInt32("Unknown", 7);
    ASSERT_FALSE(document.Load(record).Failed());

    BMessage stored;
    ASSERT_FALSE(document.Store(&stored, true).Failed());
    EXPECT_EQ(FieldNames(stored),
              "Epochs, Cur Epoch, Cur Ep Writ, Cur Sys, Segment length, Updates per sec, "
              "Body Name Index, Displays, Disp type, Epoch W, Save at, ");
    BMessage found;
    ASSERT_EQ(stored.FindMessage("Displays", &found), B_OK);
    EXPECT_EQ(found, display);
}

TEST(SimulationDocument, EarlierLayoutHangsEpochsWhereTheySay) {
    EXPECT_EQ(OutlineOf(FlatRecord({{10, {}}, {20, {}}, {30, {}}})), "10(20(30))");
    EXPECT_EQ(OutlineOf(FlatRecord({{1, -1}, {2, 4}, {3, 1}, {4, 1}})), "1(3 4(2))");
    // Beneath nothing, beneath itself, and beneath each other: nothing is lost, nothing loops.
    EXPECT_EQ(OutlineOf(FlatRecord({{1, -1}, {2, 99}, {3, 3}})), "1 2 3");
    EXPECT_EQ(OutlineOf(FlatRecord({{1, 2}, {2, 3}, {3, 1}})), "3(2(1))");
}

TEST(SimulationDocument, EarlierLayoutIsNotNestedWithoutEnd) {
    std::vector<std::pair<int64, std::optional<int64>>> chain;
    for (int64 i = 0; i < BMessage::kMaxNesting; i++)
        chain.emplace_back(i, i - 1);
    SimulationDocument document(nullptr);
    EXPECT_EQ(document.Load(FlatRecord(chain)).text, kTextNestedTooDeeply);
    EXPECT_EQ(document.Root()->CountChildren(), 0);
}

TEST(SimulationDocument, FocusStaysWithinTheTree) {
    const auto first = MakePlanetEpoch("First"), last = MakePlanetEpoch("Last");
    for (const auto& [position, name] : {std::pair{99, "Last"}, {-3, "First"}, {1, "Last"}}) {
        BMessage record = RecordOf({first.get(), last.get()});
        record.AddInt32("Cur Epoch", position);
        record.AddInt64("Cur Sys", 77);
        SimulationDocument document(nullptr);
        ASSERT_FALSE(document.Load(record).Failed());
        EXPECT_EQ(document.Portal()->FocusEpoch()->Name(), name);
        EXPECT_EQ(document.Portal()->FocusSystem()->Name(), "Star");
    }
}

TEST(SimulationDocument, SimulationInfoTakesWhatItCanUse) {
    SimulationDocument document(nullptr);
    BMessage record = PlanetRecord();
    record.AddFloat("Updates per sec", 79.9f);
    record.AddInt32("Segment length", 5);
    record.AddInt32("Body Name Index", 12);
    ASSERT_FALSE(document.Load(record).Failed());
    EXPECT_EQ(document.GetCalculator()->UpdatesPerSecond(), 79);
    EXPECT_EQ(document.GetCalculator()->SegmentLength(), 5);
    EXPECT_EQ(document.NextBodyNameIndex(), 12);

    // What is missing, and a rate that would stop the displays, changes nothing.
    BMessage poor = PlanetRecord();
    poor.AddFloat("Updates per sec", 0.5f);
    ASSERT_FALSE(document.Load(poor).Failed());
    EXPECT_EQ(document.GetCalculator()->UpdatesPerSecond(), 79);
    EXPECT_EQ(document.GetCalculator()->SegmentLength(), 5);
    EXPECT_EQ(document.NextBodyNameIndex(), 12);
}

// A document that says nothing runs as fast as possible, and goes on saying nothing.
TEST(SimulationDocument, ThePaceIsKeptAndOneThatIsNoneIsAsFastAsPossible) {
    SimulationDocument document(nullptr);
    for (const Pace pace : {Pace::Auto(), Pace::Of(86400.0), Pace()}) {
        ASSERT_FALSE(document.Load(PlanetRecord()).Failed());
        EXPECT_TRUE(document.GetCalculator()->GetPace().IsUnlimited());
        document.GetCalculator()->SetPace(pace);
        BMessage stored;
        ASSERT_FALSE(document.Store(&stored, true).Failed());
        EXPECT_EQ(stored.HasName("Pace"), !pace.IsUnlimited());
        SimulationDocument again(nullptr);
        ASSERT_FALSE(again.Load(stored).Failed());
        EXPECT_TRUE(again.GetCalculator()->GetPace() == pace);
    }
    for (const double none : {0.5, -2.0, 1e16, double{NAN}}) {
        document.GetCalculator()->SetPace(Pace::Auto());
        BMessage record = PlanetRecord();
        record.AddDouble("Pace", none);
        ASSERT_FALSE(document.Load(record).Failed());
        EXPECT_TRUE(document.GetCalculator()->GetPace().IsUnlimited()) << none;
    }
}

TEST(SimulationDocument, ARecordThatCannotBeUsedChangesNothing) {
    SimulationDocument document(nullptr);
    LoadTree(&document);
    ExecuteFiled(document.Portal(), std::make_unique<NewEpochCommand>(document.Portal()));
    EXPECT_EQ(document.Load(BMessage()).text, kTextNoEpoch);
    EXPECT_EQ(Outline(document.Root()), "Genesis(Left Right(Right))");
    EXPECT_TRUE(document.GetUndoChain()->CanUndo());
    // Another one has no part in the history.
    LoadTree(&document);
    EXPECT_EQ(document.Portal()->FocusEpoch()->Name(), "Right");
    EXPECT_FALSE(document.GetUndoChain()->CanUndo());
}

// With groups, a system shown relative to another, two runs and the integrator's state of both, as
// an earlier build has written it.
TEST(SimulationDocument, WhatIsReadIsWrittenByteForByte) {
    const std::string sample = ORVEK_TEST_DATA_DIR "/two-runs.orvek";
    const TestFolder folder;
    BMessage read;
    ASSERT_FALSE(SimulationFile::Read(sample, &read).Failed());
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(read).Failed());
    BMessage written;
    ASSERT_FALSE(document.Store(&written, true).Failed());
    const std::string copy = folder.Path("copy");
    ASSERT_FALSE(SimulationFile::Write(copy, written).Failed());
    const auto bytesOf = [](const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    EXPECT_EQ(bytesOf(sample).size(), 12164u);
    EXPECT_TRUE(bytesOf(copy) == bytesOf(sample));
}

}  // namespace
