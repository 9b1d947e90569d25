#include "Tools/ExampleBuilder/ExampleDocument.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <numbers>

#include "Exchange/ExampleModel.h"
#include "Exchange/ExampleParser.h"
#include "Model/Epochs/Epoch.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Platform/TestFolder.h"

namespace {

class ExampleDocument : public testing::Test {
protected:
    ExampleDocument() {
        EXPECT_TRUE(ExampleParser(resources_)
                        .Parse(R"(
            title "Two bodies"
            see "One goes around"
            see "the other"
            source "Kepler"
            epoch "Start"
            picture 5.6e11 m y
            follow "Star"
            turning "Star" "Planet"
            names no
            focus "Planet"
            body "Star"
                mass 1e20 m3/s2
            body "Planet"
                orbit "Star" a 1e11 m)",
                               &text_));
    }

    const ProgramResources resources_;
    ExampleText text_;
    const TestFolder folder_;
    const std::string path_ = folder_.Path("two.orvek");
};

TEST_F(ExampleDocument, IsReadAsItWasMeant) {
    ExampleModel model(resources_);
    const std::unique_ptr<Epoch> epoch = model.Build(text_);
    ASSERT_NE(epoch, nullptr) << model.Reason();
    ASSERT_FALSE(WriteExample(path_, text_, *epoch, model.Chosen()).Failed());

    BMessage record;
    ASSERT_FALSE(SimulationFile::Read(path_, &record).Failed());
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(record).Failed());
    const EpochPortal& portal = *document.Portal();
    EXPECT_EQ(portal.FocusEpoch()->Name(), "Start");
    EXPECT_EQ(portal.FocusSystem()->Name(), "Planet");
    EXPECT_EQ(portal.FocusSystem()->Position(), epoch->SystemFromID(1)->Position());

    // 560 pixels across the picture, seen along y, turning with the planet.
    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    double scale = 0.0;
    int32 axis = 0;
    EXPECT_EQ(display.FindDouble("Scale", &scale), B_OK);
    EXPECT_EQ(scale, 1e-9);
    EXPECT_EQ(display.FindInt32("Sup axis", &axis), B_OK);
    EXPECT_EQ(axis, 2);
    int64 star = 0;
    int64 planet = 0;
    bool names = true;
    EXPECT_EQ(display.FindInt64("View turns about", &star), B_OK);
    EXPECT_EQ(display.FindInt64("View turns with", &planet), B_OK);
    EXPECT_EQ(star, epoch->RootSystem()->ChildAt(0)->ID());
    EXPECT_EQ(planet, epoch->RootSystem()->ChildAt(1)->ID());
    EXPECT_EQ(display.FindInt64("View follows", &star), B_OK);
    EXPECT_EQ(star, epoch->RootSystem()->ChildAt(0)->ID());
    EXPECT_EQ(display.FindBool("View names", &names), B_OK);
    EXPECT_FALSE(names);
    std::string source;
    EXPECT_EQ(record.FindString("Source", &source), B_OK);
    EXPECT_EQ(source, "Kepler");
    // It stands beside the window, wherever that is.
    EXPECT_FALSE(record.HasName("Edit at"));

    std::vector<std::string> description(3);
    for (int32 i = 0; i < 3; i++)
        record.FindString("Description", i, &description[static_cast<std::size_t>(i)]);
    EXPECT_EQ(description,
              (std::vector<std::string>{"Two bodies", "One goes around", "the other"}));
}

TEST_F(ExampleDocument, ShowsSpaceFromItsCamera) {
    ASSERT_TRUE(ExampleParser(resources_)
                    .Parse("epoch \"E\"\npicture 1e11 m\ncamera 90 30\nbody \"A\"", &text_));
    ExampleModel model(resources_);
    const std::unique_ptr<Epoch> epoch = model.Build(text_);
    ASSERT_NE(epoch, nullptr) << model.Reason();
    ASSERT_FALSE(WriteExample(path_, text_, *epoch, model.Chosen()).Failed());

    BMessage record;
    BMessage display;
    int32 kind = 0;
    ASSERT_FALSE(SimulationFile::Read(path_, &record).Failed());
    EXPECT_EQ(record.FindInt32("Disp type", &kind), B_OK);
    EXPECT_EQ(kind, 2);
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    double right[3];
    double up[3];
    double distance = 0.0;
    ASSERT_EQ(display.FindDoubles("Space right", 0, 3, right), B_OK);
    ASSERT_EQ(display.FindDoubles("Space up", 0, 3, up), B_OK);
    EXPECT_EQ(display.FindDouble("Space distance", &distance), B_OK);
    // From the side of y, a little above: -x is to the right.
    EXPECT_NEAR(right[0], -1.0, 1e-15);
    EXPECT_NEAR(up[1], -0.5, 1e-15);
    EXPECT_NEAR(up[2], std::sqrt(0.75), 1e-15);
    EXPECT_NEAR(distance, 1e11 / (2.0 * std::tan(std::numbers::pi / 8.0)), 1e7);
}

TEST_F(ExampleDocument, IsNotWrittenWhenItCouldNotBeOpened) {
    Epoch epoch;
    epoch.SetTime(std::numeric_limits<double>::infinity());
    EXPECT_TRUE(WriteExample(path_, text_, epoch, {}).Failed());
    EXPECT_FALSE(std::filesystem::exists(path_));
}

}  // namespace
