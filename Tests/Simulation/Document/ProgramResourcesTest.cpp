#include "Simulation/Document/ProgramResources.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <tuple>

#include "Model/Epochs/Epoch.h"
#include "Model/Systems/MassSystem.h"
#include "Platform/Storage/BResources.h"
#include "Simulation/Document/SimulationDocument.h"

namespace {

// This test program carries the resources of the real one.
struct OwnResourcesTest : testing::Test {
    ProgramResources resources_;
};

TEST_F(OwnResourcesTest, BodyNamesAreDistinct) {
    EXPECT_GT(resources_.CountBodyNames(), 200);
    EXPECT_EQ(resources_.BodyName(-1), nullptr);
    EXPECT_EQ(resources_.BodyName(resources_.CountBodyNames()), nullptr);
    std::set<std::string> seen;
    for (int32 i = 0; i < resources_.CountBodyNames(); i++)
        EXPECT_TRUE(seen.insert(resources_.BodyName(i)).second) << resources_.BodyName(i);
}

// Below 4000 labels are read in runs that begin at a hundred: one beyond a gap would be lost.
TEST_F(OwnResourcesTest, NoTextIsLeftOut) {
    constexpr int32 kFirst = 1500;
    BResources own;
    ASSERT_EQ(own.SetToProgram(), B_OK);
    type_code type = 0;
    int32 id = 0;
    for (int32 i = 0; own.GetResourceInfo(i, &type, &id, nullptr, nullptr); i++)
        if (type == B_STRING_TYPE && id >= kFirst) {
            EXPECT_EQ(resources_.InterfaceLabel(id), own.LoadString(id)) << id;
        }
}

TEST_F(OwnResourcesTest, ShortcutsAreOneLetter) {
    for (const int32 shortcut : {1602, 1605, 1702, 1704, 1902, 2304, 2801, 2803, 2806})
        EXPECT_EQ(resources_.InterfaceLabel(shortcut).size(), 1u) << shortcut;
}

TEST_F(OwnResourcesTest, UnitTables) {
    EXPECT_EQ(resources_.MassUnits().Parse("2 kg").value, 2.0 * 6.672e-11);
    EXPECT_EQ(resources_.DistanceUnits().Parse("1 au").value, 149597870660.0);
    EXPECT_EQ(resources_.SpeedUnits().Parse("1 kph").value, 1000.0 / 3600.0);
    EXPECT_EQ(resources_.TimeUnits().Parse("10 yr").value, 315569252.0);
}

// As people write them who have not looked into the menu.
TEST_F(OwnResourcesTest, UnitsHaveTheirUsualAndSingularNames) {
    const std::tuple<const UnitTable*, const char*, const char*> cases[] = {
        {&resources_.MassUnits(), "1 solar mass", "1 Ms"},
        {&resources_.MassUnits(), "1 Kilogram", "1 kg"},
        {&resources_.DistanceUnits(), "1 earth radius", "1 Re"},
        {&resources_.DistanceUnits(), "1 mile", "1609.344 m"},
        {&resources_.DistanceUnits(), "2 ly", "2 light years"},
        {&resources_.DistanceUnits(), "1 pc", "1 parsec"},
        {&resources_.SpeedUnits(), "36 km/h", "36 kph"},
        {&resources_.SpeedUnits(), "1 astronomical unit/day", "1 AU/dy"},
        {&resources_.TimeUnits(), "3 h", "3 Hours"},
        {&resources_.TimeUnits(), "1 d", "1 day"},
        {&resources_.TimeUnits(), "1.5 min", "90 s"},
        {&resources_.TimeUnits(), "1 year", "1 yr"},
    };
    for (const auto& [units, typed, menu] : cases) {
        ASSERT_TRUE(units->Parse(typed)) << typed;
        EXPECT_EQ(units->Parse(typed).value, units->Parse(menu).value) << typed;
    }
    const UnitTable& distance = resources_.DistanceUnits();
    EXPECT_DOUBLE_EQ(distance.Parse("1 ly").value, 299792458.0 * 365.25 * 86400.0);
    EXPECT_NEAR(distance.Parse("1 pc").value / distance.Parse("1 ly").value, 3.261563777, 1e-8);
    EXPECT_EQ(distance.Rows().size(), 6u) << "menus stay as they are";
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
    for (const int32 i : {0, 1})
        EXPECT_EQ(epoch->RootSystem()->ChildAt(i)->Name(), resources_.BodyName(i));
}

// A field of another type than its reader asks for would not be kept.
TEST_F(OwnResourcesTest, TheTemplatesOwnFields) {
    const BMessage& record = resources_.NewSimulation();
    SimulationDocument document(nullptr);
    BMessage stored;
    ASSERT_FALSE(document.Load(record).Failed());
    ASSERT_FALSE(document.Store(&stored, true).Failed());
    std::string name;
    type_code type = 0;
    for (int32 i = 0; record.GetInfo(B_ANY_TYPE, i, &name, &type) == B_OK; i++)
        EXPECT_TRUE(stored.HasName(name.c_str(), type)) << name;
    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    EXPECT_TRUE(display.HasName("Disp frame", B_RECT_TYPE));
    for (const char* number : {"Scale", "Units"})
        EXPECT_TRUE(display.HasName(number, B_DOUBLE_TYPE)) << number;
    for (const char* number : {"Sup axis", "Ref to"})
        EXPECT_TRUE(display.HasName(number, B_INT32_TYPE)) << number;
}

// Whole, with its tag, and in big-endian order with all that is in it.
TEST(TemplateTest, IsStoredAsDocumentsAre) {
    BResources own;
    ASSERT_EQ(own.SetToProgram(), B_OK);
    std::size_t size = 0;
    const auto* const file = static_cast<const char*>(own.LoadResource(FourCC("kwzx"), 0, &size));
    ASSERT_NE(file, nullptr);
    const std::string_view stored(file, size);
    EXPECT_TRUE(stored.starts_with("KWZXNB00FOB1"));
    EXPECT_EQ(stored.find("1BOF"), std::string_view::npos);
    EXPECT_TRUE(ProgramResources(BResources()).NewSimulation().IsEmpty()) << "where there is none";
}

}  // namespace
