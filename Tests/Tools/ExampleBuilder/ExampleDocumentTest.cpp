#include "Tools/ExampleBuilder/ExampleDocument.h"

#include <gtest/gtest.h>

#include <filesystem>

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
            epoch "Start"
            picture 5.2e11 m y
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

    // 520 pixels across the picture, seen along y.
    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    double scale = 0.0;
    int32 axis = 0;
    EXPECT_EQ(display.FindDouble("Scale", &scale), B_OK);
    EXPECT_EQ(scale, 1e-9);
    EXPECT_EQ(display.FindInt32("Sup axis", &axis), B_OK);
    EXPECT_EQ(axis, 2);
    // It stands beside the window, wherever that is.
    EXPECT_FALSE(record.HasName("Edit at"));

    std::vector<std::string> description(3);
    for (int32 i = 0; i < 3; i++)
        record.FindString("Description", i, &description[static_cast<std::size_t>(i)]);
    EXPECT_EQ(description,
              (std::vector<std::string>{"Two bodies", "One goes around", "the other"}));
}

TEST_F(ExampleDocument, IsNotWrittenWhenItCouldNotBeOpened) {
    Epoch epoch;
    epoch.SetTime(std::numeric_limits<double>::infinity());
    EXPECT_TRUE(WriteExample(path_, text_, epoch, {}).Failed());
    EXPECT_FALSE(std::filesystem::exists(path_));
}

}  // namespace
