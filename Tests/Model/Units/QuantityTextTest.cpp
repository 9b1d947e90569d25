// Numbers as the user reads them.
#include "Model/Units/QuantityText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "Model/Units/UnitTable.h"

TEST(QuantityText, HasNoExponentWhereNoneIsNeeded) {
    const std::pair<double, const char*> cases[] = {
        {0.0, "0"},
        {-0.0, "0"},
        {-12.5, "-12.5"},
        {0.00012, "0.00012"},
        {0.0000012, "1.2e-6"},
        {149597870660.0, "1.495978707e11"},
        {149597870000.0, "149597870000"},
        {1e14, "100000000000000"},
        {1e15, "1e15"},
        {1.0 / 3.0, "0.3333333333"},
        {99999.999999999, "100000"},
        {-2.5e-300, "-2.5e-300"},
        {std::numeric_limits<double>::infinity(), "inf"}};
    for (const auto& [value, text] : cases)
        EXPECT_EQ(print_double(value), text);
    EXPECT_EQ(print_double(std::nan("")), "");
    EXPECT_EQ(print_double(1.0 / 3.0, 3), "0.333");
    EXPECT_EQ(QuantityText(149597870660.0, 1.0), "149597870660");
}

TEST(QuantityText, ReadsBackAsItWasTyped) {
    constexpr double kAU = 1.4959787066e11;
    for (const char* typed : {"0.7", "1.1", "-3.3", "123.456", "1e-9", "384400"}) {
        UnitTable units;
        const double value = units.Parse(typed, kAU).value;
        EXPECT_EQ(QuantityText(value, kAU), print_double(std::atof(typed)));
    }
}

TEST(QuantityText, LosesNothing) {
    std::mt19937_64 random(7);
    const UnitTable units;
    int exact = 0;
    constexpr int kCount = 20000;
    for (int i = 0; i < kCount; i++) {
        const auto value = std::bit_cast<double>(random());
        const double uval = i % 2 == 0 ? 1.0 : 1731456.8363;
        if (!std::isfinite(value) || std::fabs(value) < 1e-290 || std::fabs(value) > 1e290)
            continue;
        const double again = units.Parse(QuantityText(value, uval), uval).value;
        EXPECT_NEAR(again / value, 1.0, 2.3e-16);
        EXPECT_TRUE(uval != 1.0 || again == value);
        exact += again == value ? 1 : 0;
    }
    EXPECT_GT(exact, kCount * 8 / 10);
}
