#include "ProgramResources.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "BResources.h"
#include "Epoch.h"
#include "MassSystem.h"
#include "ResourceWriter.h"

namespace {

constexpr type_code kTemplate = FourCC("kwzx");

// This test program carries the resources of the real one.
class OwnResourcesTest : public testing::Test {
protected:
    std::string Label(int32 id) { return resources_.InterfaceLabel(id); }

    ProgramResources resources_;
};

TEST_F(OwnResourcesTest, BodyNamesGoThroughTheAlphabet) {
    EXPECT_EQ(resources_.CountBodyNames(), 206);
    EXPECT_STREQ(resources_.BodyName(0), "Arrakis");
    EXPECT_EQ(resources_.BodyName(-1), nullptr);
    EXPECT_EQ(resources_.BodyName(206), nullptr);
    std::set<std::string> seen;
    int runs = 1;
    for (int32 i = 0; i < resources_.CountBodyNames(); i++) {
        const std::string name = resources_.BodyName(i);
        EXPECT_TRUE(seen.insert(name).second) << name << " twice";
        if (i > 0 && name[0] < resources_.BodyName(i - 1)[0]) runs++;
    }
    EXPECT_EQ(runs, 8);
}

// The last number of each run: a text that is left out would end it sooner.
TEST_F(OwnResourcesTest, EveryRunOfLabelsIsComplete) {
    constexpr int32 kEnds[] = {1516, 1607, 1711, 1802, 1903, 2001, 2114, 2207, 2317,
                               2410, 2503, 2606, 2703, 2807, 2904, 3002, 3103, 3200};
    int32 base = 1500;
    for (const int32 end : kEnds) {
        for (int32 id = base; id <= end; id++)
            EXPECT_NE(Label(id), "") << id;
        EXPECT_EQ(Label(end + 1), "");
        base += 100;
    }
    EXPECT_EQ(Label(1502), " of ");
    EXPECT_EQ(Label(2307), "Upon \"Go\"");
    EXPECT_EQ(Label(1603), "Save As\xE2\x80\xA6");
    for (const int32 shortcut : {1602, 1605, 1702, 1704, 1902, 2304, 2801, 2803, 2806})
        EXPECT_EQ(Label(shortcut).size(), 1u) << shortcut;
}

TEST_F(OwnResourcesTest, UnitTables) {
    EXPECT_EQ(resources_.MassUnits().Rows().size(), 5u);
    EXPECT_EQ(resources_.DistanceUnits().Rows().size(), 6u);
    EXPECT_EQ(resources_.SpeedUnits().Rows().size(), 6u);
    EXPECT_EQ(resources_.TimeUnits().Rows().size(), 4u);
    EXPECT_EQ(resources_.MassUnits().Parse("2 kg").value, 2.0 * 6.672e-11);
    EXPECT_EQ(resources_.DistanceUnits().Parse("1 au").value, 149597870660.0);
    EXPECT_EQ(resources_.SpeedUnits().Parse("1 kph").value, 1000.0 / 3600.0);
    EXPECT_EQ(resources_.TimeUnits().Parse("10 yr").value, 315569252.0);
}

// The template holds what this program would itself write, and in the order in which it would.
TEST_F(OwnResourcesTest, TheTemplatesEpochIsAsTheProgramWritesOne) {
    BMessage stored;
    ASSERT_EQ(resources_.NewSimulation().FindMessage("Epochs", &stored), B_OK);
    const std::unique_ptr<BArchivable> object(Epoch::Instantiate(&stored));
    const auto* const epoch = dynamic_cast<Epoch*>(object.get());
    ASSERT_NE(epoch, nullptr);
    BMessage written(FourCC("ARCV"));
    ASSERT_EQ(epoch->Archive(&written, true), B_OK);
    EXPECT_EQ(stored.ToText(), written.ToText());
    // Its bodies take the first of the names.
    const MassSystem* const root = epoch->RootSystem();
    ASSERT_EQ(root->CountChildren(), 2);
    EXPECT_EQ(root->ChildAt(0)->Name(), resources_.BodyName(0));
    EXPECT_EQ(root->ChildAt(1)->Name(), resources_.BodyName(1));
}

// Each field with the type that its reader asks for.
TEST_F(OwnResourcesTest, TheTemplatesOwnFields) {
    const BMessage& record = resources_.NewSimulation();
    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    const auto expectFields = [](const BMessage& in, type_code type, const char* names) {
        std::istringstream list(names);
        for (std::string name; std::getline(list, name, ',');)
            EXPECT_TRUE(in.HasName(name.c_str(), type)) << name;
    };
    expectFields(record, B_INT32_TYPE, "Cur Epoch,Segment length,Body Name Index,Disp type");
    expectFields(record, B_INT64_TYPE, "Cur Sys");
    expectFields(record, B_FLOAT_TYPE, "Updates per sec,Epoch W,Epoch H,Save W,Save H");
    expectFields(record, B_POINT_TYPE, "Edit at,Anim at,Colors at,Epoch at,Save at");
    expectFields(record, B_BOOL_TYPE, "Anim Show,Colors Show,Epoch Show,Cur Ep Writ");
    expectFields(display, B_RECT_TYPE, "Disp frame");
    expectFields(display, B_DOUBLE_TYPE, "Scale,Units");
    expectFields(display, B_INT32_TYPE, "Sup axis,Ref to");
}

TEST(TemplateTest, WithoutAGoodOneTheRecordIsEmpty) {
    BResources own;
    ASSERT_EQ(own.SetToProgram(), B_OK);
    std::size_t size = 0;
    const auto* const file = static_cast<const char*>(own.LoadResource(kTemplate, 0, &size));
    ASSERT_NE(file, nullptr);
    const std::string good(file, size);
    EXPECT_TRUE(good.starts_with("KWZXNB00FOB1")) << "in big-endian order";
    EXPECT_EQ(good.find("1BOF"), std::string::npos);
    std::string otherTag = good;
    otherTag[7] = '1';
    for (const std::string& bad : {otherTag, good.substr(0, 5), good.substr(0, 8),
                                   good.substr(0, good.size() - 1), std::string()}) {
        ResourceWriter writer;
        const auto* const begin = reinterpret_cast<const std::byte*>(bad.data());
        EXPECT_TRUE(writer.Add(kTemplate, 0, "", {begin, begin + bad.size()}));
        BResources resources;
        ASSERT_EQ(resources.SetTo(writer.File()), B_OK);
        EXPECT_TRUE(ProgramResources(resources).NewSimulation().IsEmpty()) << bad.size();
    }
}

}  // namespace
