#include "ExampleDocument.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "BMessage.h"
#include "Epoch.h"
#include "ExampleModel.h"
#include "SimulationDocument.h"
#include "SimulationFile.h"
#include "TestFolder.h"

namespace {

ExampleText TwoBodies() {
    ExampleText text;
    text.epochName = "Start";
    text.picture = 5.2e11;
    text.axis = 2;
    text.focus = "Planet";
    text.systems.resize(2);
    text.systems[0].name = "Star";
    text.systems[0].mass = 1e20;
    text.systems[1].name = "Planet";
    text.systems[1].orbit = ExampleOrbit{"Star", {.semiMajorAxis = 1e11}};
    return text;
}

TEST(ExampleDocument, IsReadAsItWasMeant) {
    const ExampleText text = TwoBodies();
    ExampleModel model;
    const std::unique_ptr<Epoch> epoch = model.Build(text);
    ASSERT_NE(epoch, nullptr) << model.Reason();
    const TestFolder folder;
    const std::string path = folder.Path("two.orvek");
    ASSERT_FALSE(WriteExample(path, text, *epoch, model.FocusID()).Failed());

    BMessage record;
    ASSERT_FALSE(SimulationFile::Read(path, &record).Failed());
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(record).Failed());
    const EpochPortal& portal = *document.Portal();
    EXPECT_EQ(portal.FocusEpoch()->Name(), "Start");
    EXPECT_TRUE(portal.FocusEpoch()->Writeable());
    EXPECT_EQ(portal.FocusSystem()->Name(), "Planet");
    EXPECT_EQ(portal.FocusSystem()->Position(), epoch->SystemFromID(1)->Position());

    // 520 pixels across the picture, seen along y.
    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    double scale = 0.0;
    int32 axis = 0;
    EXPECT_EQ(display.FindDouble("Scale", &scale), B_OK);
    EXPECT_EQ(scale, 1e-9);
    EXPECT_EQ(display.FindInt32("Sup axis", &axis), B_OK);
    EXPECT_EQ(axis, 2);
}

TEST(ExampleDocument, IsNotWrittenWhenItCouldNotBeOpened) {
    const ExampleText text = TwoBodies();
    Epoch epoch;
    epoch.SetName("Never");
    epoch.SetTime(std::numeric_limits<double>::infinity());
    const TestFolder folder;
    const std::string path = folder.Path("never.orvek");
    EXPECT_TRUE(WriteExample(path, text, epoch, 0).Failed());
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
