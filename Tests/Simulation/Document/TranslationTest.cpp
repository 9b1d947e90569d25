// What must hold of every language that the windows can speak: nothing is missing, what the program
// fills in has its places, and what is typed and stored stays.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "Platform/Storage/BResources.h"
#include "Simulation/Document/ProgramResources.h"

namespace {

// Names of bodies, which stay; units are looked at by themselves.
constexpr int32 kFirstText = 1500;

class TranslationTest : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        ASSERT_EQ(own_.SetToProgram(), B_OK);
        ASSERT_EQ(other_.SetTo(GetParam().c_str()), B_OK) << GetParam();
    }

    // Those of orvek-run, which answers other programs in one language.
    static bool IsOfCommandLine(int32 id) {
        return (id >= 4100 && id < 4200) || (id >= 4520 && id < 4540) || id == 4615 ||
               (id >= 4660 && id < 4680);
    }
    [[nodiscard]] std::set<int32> Texts() const {
        std::set<int32> ids;
        type_code type = 0;
        int32 id = 0;
        for (int32 i = 0; own_.GetResourceInfo(i, &type, &id, nullptr, nullptr); i++)
            if (type == B_STRING_TYPE && id >= kFirstText && !IsOfCommandLine(id)) ids.insert(id);
        return ids;
    }

    BResources own_;
    BResources other_;
};

// The figures of "%1" and the like, each as often as it is there.
std::multiset<char> Places(const std::string& text) {
    std::multiset<char> places;
    for (std::size_t i = 0; i + 1 < text.size(); i++)
        if (text[i] == '%' && text[i + 1] >= '1' && text[i + 1] <= '9') places.insert(text[i + 1]);
    return places;
}

}  // namespace

TEST_P(TranslationTest, EveryTextOfAWindowIsThere) {
    EXPECT_GT(Texts().size(), 500u);
    for (const int32 id : Texts()) {
        const std::string text = *own_.LoadString(id);
        const auto translated = other_.LoadString(id);
        // A key is the same in every language.
        if (text.size() == 1 && !translated) continue;
        ASSERT_TRUE(translated) << id << ": " << text;
        EXPECT_EQ(translated->empty(), text.empty()) << id;
    }
}

TEST_P(TranslationTest, WhatIsFilledInHasItsPlace) {
    for (const int32 id : Texts())
        if (const auto text = other_.LoadString(id)) {
            EXPECT_EQ(Places(*text), Places(*own_.LoadString(id))) << id << ": " << *text;
        }
}

// Items that lead on to a window end with the same sign, labels of fields with a colon, and lines
// on a terminal with their end.
TEST_P(TranslationTest, EndsSayTheSame) {
    for (const int32 id : Texts()) {
        const std::string text = *own_.LoadString(id);
        const std::string translated = other_.LoadString(id).value_or(text);
        for (const std::string end : {"…", ":", "\n"})
            EXPECT_EQ(translated.ends_with(end), text.ends_with(end)) << id << ": " << translated;
    }
}

TEST_P(TranslationTest, UnitsAreUnderstoodByAllTheirNames) {
    const ProgramResources plain;
    ProgramResources translated;
    translated.Translate(other_);
    int renamed = 0;
    for (const auto units : {&ProgramResources::MassUnits, &ProgramResources::DistanceUnits,
                             &ProgramResources::SpeedUnits, &ProgramResources::TimeUnits}) {
        const auto& before = (plain.*units)().Rows();
        const UnitTable& table = (translated.*units)();
        ASSERT_EQ(table.Rows().size(), before.size());
        for (std::size_t i = 0; i < before.size(); i++) {
            EXPECT_EQ(table.Rows()[i].abbreviation, before[i].abbreviation);
            EXPECT_EQ(table.Rows()[i].factor, before[i].factor);
            // What a file or an old habit says.
            EXPECT_EQ(table.FactorOf(before[i].name), before[i].factor) << before[i].name;
            EXPECT_EQ(table.FactorOf(table.Rows()[i].name), before[i].factor);
            renamed += table.Rows()[i].name != before[i].name ? 1 : 0;
        }
    }
    EXPECT_GT(renamed, 10);
}

// What a document holds does not depend on who made it.
TEST_P(TranslationTest, NamesOfBodiesAndTheTemplateStay) {
    const ProgramResources plain;
    ProgramResources translated;
    translated.Translate(other_);
    ASSERT_EQ(translated.CountBodyNames(), plain.CountBodyNames());
    for (int32 i = 0; i < plain.CountBodyNames(); i++)
        EXPECT_STREQ(translated.BodyName(i), plain.BodyName(i));
    std::vector<std::byte> records[2];
    EXPECT_EQ(plain.NewSimulation().Flatten(&records[0]), B_OK);
    EXPECT_EQ(translated.NewSimulation().Flatten(&records[1]), B_OK);
    EXPECT_EQ(records[0], records[1]);
}

std::vector<std::string> Translations() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(ORVEK_LANGUAGES))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationTest, testing::ValuesIn(Translations()),
                         [](const auto& language) {
                             return std::filesystem::path(language.param).stem().string();
                         });
