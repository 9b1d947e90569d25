#include "Model/Units/UnitTable.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "Platform/Storage/BResources.h"
#include "Tools/ResourceCompiler/ResourceWriter.h"

namespace {

using ParseError = UnitTable::ParseError;

// A table from string resources with these texts in a row.
UnitTable TableOf(const std::vector<std::string>& texts, int32 base = 1000) {
    ResourceWriter writer;
    for (const std::string& text : texts) {
        const auto* const begin = reinterpret_cast<const std::byte*>(text.c_str());
        EXPECT_TRUE(writer.Add(B_STRING_TYPE, base++, "", {begin, begin + text.size() + 1}));
    }
    BResources resources;
    EXPECT_EQ(resources.SetTo(writer.File()), B_OK);
    return {resources, base - static_cast<int32>(texts.size())};
}

UnitTable TimeUnits() {
    return TableOf({"Seconds", "s", "1.0", "Hours", "hr", "3600.0", "Days", "dy", "86400.0",
                    "Years", "yr", "3.15569252e7"});
}

UnitTable DistanceUnits() {
    return TableOf({"Meters", "m", "1.0", "Kilometers", "km", "1000.0", "Miles", "mi", "1609.344"});
}

TEST(UnitTableTest, AbbreviatesByTheNearestRatio) {
    const UnitTable time = TimeUnits();
    EXPECT_EQ(time.Abbreviation(86400.0), "dy");
    EXPECT_EQ(time.Abbreviation(50000.0), "dy");
    EXPECT_EQ(time.Abbreviation(60.0), "s");  // as far from a second as from an hour
    EXPECT_EQ(time.Abbreviation(61.0), "hr");
    EXPECT_EQ(time.Abbreviation(1e300), "yr");
    EXPECT_EQ(time.Abbreviation(1e-300), "s");
    EXPECT_EQ(UnitTable().Abbreviation(1.0), "X");
}

TEST(UnitTableTest, AFactorThatIsNoneBecomesOne) {
    for (const char* factor :
         {"0", "-5", "", "much", "1e400", "1e-400", "inf", "nan", "1.5 km", "1,5", "0x10", "- 1"})
        EXPECT_EQ(TableOf({"Unit", "u", factor}).Rows()[0].factor, 1.0) << factor;
    EXPECT_EQ(TableOf({"Unit", "u", " +2.5E1 "}).Rows()[0].factor, 25.0);
}

TEST(UnitTableTest, AnIncompleteRowEndsTheTable) {
    EXPECT_EQ(TableOf({"A", "a", "1", "B", "b"}).Rows().size(), 1u);
    const UnitTable whole = TableOf({"A", "a", "1", "B", "b", "2"}, 1300);
    ASSERT_EQ(whole.Rows().size(), 2u);
    EXPECT_EQ(whole.Rows()[1].name, "B");
    EXPECT_EQ(whole.Rows()[1].abbreviation, "b");
    EXPECT_EQ(whole.Rows()[1].factor, 2.0);
}

TEST(UnitTableTest, ReadsNumbersWithUnits) {
    const UnitTable distance = DistanceUnits();
    const std::pair<const char*, double> cases[] = {{"384400 km", 384400.0 * 1000.0},
                                                    {"384400km", 384400.0 * 1000.0},
                                                    {" \t+2.5e-1 Miles \n", 0.25 * 1609.344},
                                                    {"-.5 m", -0.5},
                                                    {"2 MILES", 2.0 * 1609.344},
                                                    {"3", 21.0}};
    for (const auto& [text, value] : cases)
        EXPECT_EQ(distance.Parse(text, 7.0).value, value) << text;
    EXPECT_EQ(distance.Parse("3").unit, nullptr);
    EXPECT_EQ(distance.Parse("3 mi").unit, distance.FindExact(1609.344));
    EXPECT_EQ(distance.FindExact(1609.345), nullptr);
}

TEST(UnitTableTest, TellsABadNumberFromAnUnknownUnit) {
    const UnitTable distance = DistanceUnits();
    for (const char* text : {"", " ", "km", "1,5 km", "1.2.3", "--1", "+-1", "nan", "inf km",
                             "1e999 m", "1e308 km", "- 1 m", "1e5.5"})
        EXPECT_EQ(distance.Parse(text).error, ParseError::kNotANumber) << text;
    for (const char* text : {"1 parsec", "1 k m", "5e", "0x10", "1 km m", "1 kg"})
        EXPECT_EQ(distance.Parse(text).error, ParseError::kUnknownUnit) << text;
}

TEST(UnitTableTest, CapitalsMatterOnlyWhereTheyTellUnitsApart) {
    UnitTable table;
    table.Add("Mega", "M", 1e6);
    table.Add("Milli", "m", 1e-3);
    table.Add("Kelvin", "kk", 1.0);
    table.Add("Kayser", "KK", 100.0);
    EXPECT_EQ(table.FactorOf("M"), 1e6);
    EXPECT_EQ(table.FactorOf("m"), 1e-3);
    EXPECT_EQ(table.FactorOf("mEGA"), 1e6);
    EXPECT_EQ(table.FactorOf("kK"), std::nullopt);
    EXPECT_EQ(table.FactorOf("KK"), 100.0);
    table.AddSpelling("megas", 1e6);
    table.AddSpelling("mega", 2e6);
    EXPECT_EQ(table.FactorOf("MEGAS"), 1e6);
    EXPECT_EQ(table.FactorOf("MEGA"), std::nullopt);
}

// Whatever language it is that people learned to write numbers in.
TEST(UnitTableTest, WhatIsTypedHasEitherSignAndSpacesBetweenGroups) {
    UnitTable table;
    table.Add("Kilometers", "km", 1000.0);
    table.Add("Exa", "e", 1e18);
    const std::pair<const char*, double> cases[] = {
        {"3,84e5", 384000.0},
        {"384 400", 384400.0},
        {"384\u00a0400\u202fkm", 384400e3},
        {"-1 234 567,25 km", -1234567250.0},
        {"+6.674 30E-11", 6.6743e-11},
        {"1234,5", 1234.5},
        {",5", 0.5},
        {"5. km", 5000.0},
        {"1,234", 1.234},
        {"2 e", 2e18},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(table.ParseTyped(text).error, ParseError::kNone) << text;
        EXPECT_DOUBLE_EQ(table.ParseTyped(text).value, value) << text;
    }
    for (const char* text :
         {"1,234.5", "1.234,5", "1,234,567", "38 44", "3844 400", "384 4000 km", "384 400 40",
          "1.5 2", "1 .5", "3 -5", ",", "e5", "+-1", "1e999", "1e308 km", "nan", ""})
        EXPECT_EQ(table.ParseTyped(text).error, ParseError::kNotANumber) << text;
    // On command lines and in files there is one way to write a number.
    for (const char* text : {"3,84e5", "384 400", "1 234 km"})
        EXPECT_FALSE(table.Parse(text)) << text;
}

TEST(UnitTableTest, SpellingsAreUnderstoodAndNotShown) {
    ResourceWriter writer;
    const std::pair<int32, const char*> texts[] = {
        {1000, "Seconds"}, {1001, "s"},   {1002, "1"},      {1003, "Hours"}, {1004, "hr"},
        {1005, "3600"},    {1050, "h"},   {1051, "1 hr"},   {1052, "min"},   {1053, "60 s"},
        {1054, "never"},   {1055, "0 s"}, {1056, "Minute"}, {1057, "60 s"},  {1058, "lost"}};
    for (const auto& [id, text] : texts) {
        const auto* const begin = reinterpret_cast<const std::byte*>(text);
        EXPECT_TRUE(writer.Add(B_STRING_TYPE, id, "", {begin, begin + strlen(text) + 1}));
    }
    BResources resources;
    ASSERT_EQ(resources.SetTo(writer.File()), B_OK);
    const UnitTable time(resources, 1000);
    EXPECT_EQ(time.Rows().size(), 2u);
    EXPECT_EQ(time.Parse("2 h").value, 7200.0);
    EXPECT_EQ(time.Parse("2 h").unit, time.FindExact(3600.0));
    EXPECT_EQ(time.Parse("2 minute").value, 120.0);
    // No menu has it, so what is shown keeps its unit.
    EXPECT_EQ(time.Parse("2 min").unit, nullptr);
    EXPECT_FALSE(time.Parse("2 never"));
    EXPECT_EQ(time.Abbreviations(), (std::vector<std::string_view>{"s", "hr", "min"}));
}

}  // namespace
