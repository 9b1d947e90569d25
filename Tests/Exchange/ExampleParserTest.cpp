#include "Exchange/ExampleParser.h"

#include <gtest/gtest.h>

#include <numbers>

#include "Simulation/Document/ProgramResources.h"

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

class ExampleParserTest : public testing::Test {
protected:
    ExampleText Parse(std::string_view text) {
        ExampleText result;
        EXPECT_TRUE(parser_.Parse(text, &result)) << parser_.Line() << ": " << parser_.Reason();
        return result;
    }

    // What is wrong with the text: "LINE: REASON".
    std::string Fault(std::string_view text) {
        ExampleText result;
        if (parser_.Parse(text, &result)) return "nothing";
        return std::to_string(parser_.Line()) + ": " + parser_.Reason();
    }

    ProgramResources resources_;
    ExampleParser parser_{resources_};
};

TEST_F(ExampleParserTest, ReadsTheWhole) {
    const ExampleText text = Parse(
        "# a comment\r\n"
        "epoch \"One # two\"   # another\n"
        "\n"
        "time 2 dy\n"
        "picture 3 km x\n"
        "focus \"Moon\"");
    EXPECT_EQ(text.epochName, "One # two");
    EXPECT_EQ(text.time, 172800.0);
    EXPECT_EQ(text.timeUnit, 86400.0);
    EXPECT_EQ(text.picture, 3000.0);
    EXPECT_EQ(text.axis, 1);
    EXPECT_EQ(text.focus.name, "Moon");
    EXPECT_EQ(text.focus.line, 6);
}

TEST_F(ExampleParserTest, ReadsBodiesInTheirUnits) {
    const ExampleText text = Parse(
        "epoch \"E\"\n"
        "show speed km/s\n"
        "body \"A\"\n"
        "  mass 2 \"Solar Masses\"\n"
        "  radius 1 Re\n"
        "  at 1 -2 +3e0 AU\n"
        "  moving 0 30 0 km/s\n"
        "  color 1 2 3\n"
        "  disc 4 5 6\n"
        "  trail off\n"
        "body \"B\"\n"
        "  mass 7e14 m3/s2\n"
        "  relative \"A\"\n");
    ASSERT_EQ(text.systems.size(), 2u);
    const ExampleSystem& a = text.systems[0];
    EXPECT_EQ(a.line, 3);
    EXPECT_EQ(a.mass, 2.0 * 1.3271244e20);
    EXPECT_EQ(a.radius, 6378137.0);
    EXPECT_EQ(a.position,
              (ThreeVector{1.4959787066e11, -2.0 * 1.4959787066e11, 3.0 * 1.4959787066e11}));
    EXPECT_EQ(a.velocity, (ThreeVector{0.0, 30000.0, 0.0}));
    EXPECT_EQ(a.trail, (rgb_color{1, 2, 3, 255}));
    EXPECT_EQ(a.disc, (rgb_color{4, 5, 6, 255}));
    EXPECT_FALSE(a.trailOn);
    EXPECT_EQ(a.shownIn.speed, 1000.0);
    EXPECT_EQ(text.systems[1].mass, 7e14);
    EXPECT_EQ(text.systems[1].relativeTo, "A");
}

TEST_F(ExampleParserTest, NaturalUnitsMakeTheGravitationalConstantOne) {
    const ExampleText text = Parse(
        "epoch \"E\"\n"
        "natural 4 m3/s2 9 m\n"
        "body \"A\"\n"
        "  mass 2 u\n"
        "  at 1 0 0 u\n"
        "  moving 3 0 0 u\n"
        "time 1 u\n");
    EXPECT_EQ(text.systems[0].mass, 8.0);
    EXPECT_EQ(text.systems[0].position->x, 9.0);
    EXPECT_DOUBLE_EQ(text.systems[0].velocity->x, 3.0 * 2.0 / 3.0);
    EXPECT_DOUBLE_EQ(text.time, 13.5);  // sqrt(9^3 / 4)
}

TEST_F(ExampleParserTest, OrbitsCountAnglesFromTheNodeOrFromTheReference) {
    const std::string head = "epoch \"E\"\nbody \"B\"\norbit \"A\" a 2 m e 0.25 i 10 ";
    const KeplerOrbit fromNode =
        Parse(head + "node 40 peri 25 anomaly 15").systems[0].orbit->elements;
    EXPECT_EQ(fromNode.semiMajorAxis, 2.0);
    EXPECT_EQ(fromNode.eccentricity, 0.25);
    EXPECT_DOUBLE_EQ(fromNode.inclination, 10.0 * kDegree);
    EXPECT_DOUBLE_EQ(fromNode.ascendingNode, 40.0 * kDegree);
    EXPECT_DOUBLE_EQ(fromNode.pericentreArgument, 25.0 * kDegree);
    EXPECT_DOUBLE_EQ(fromNode.meanAnomaly, 15.0 * kDegree);

    // The same orbit, the elements in another order.
    const KeplerOrbit fromReference =
        Parse(head + "longitude 80 longperi 65 node 40").systems[0].orbit->elements;
    EXPECT_NEAR(fromReference.pericentreArgument, fromNode.pericentreArgument, 1e-15);
    EXPECT_NEAR(fromReference.meanAnomaly, fromNode.meanAnomaly, 1e-15);
}

TEST_F(ExampleParserTest, SaysWhereAndWhatIsWrong) {
    const std::pair<const char*, const char*> faults[] = {
        {"\n\nplanet \"X\"", "3: no such statement: \"planet\""},
        {"body \"B\"\n", "1: there is no epoch statement"},
        {"epoch \"E", "1: a quotation mark is not closed"},
        {"epoch \"E\" 1", "1: one word too many: \"1\""},
        {"epoch \"E\"\ngroup \"G\"\nbody \"B\"\n", "2: group \"G\" has no end"},
        {"cutoff 0.001", "1: the cutoff must be more than 0 and less than 0.001"},
    };
    for (const auto& [text, fault] : faults)
        EXPECT_EQ(Fault(text), fault);
    const std::pair<const char*, const char*> bodyFaults[] = {
        {"mass 1e999 kg", "3: not a number: \"1e999\""},
        {"mass 1 km", "3: no such unit here: \"km\""},
        {"mass -1 kg", "3: a mass cannot be negative"},
        {"at 1 2 m", "3: not a number: \"m\""},
        {"color 1 2 256", "3: not a whole number from 0 to 255"},
        {"orbit \"A\" e 0.1", "3: an orbit needs its semi-major axis a"},
        {"orbit \"A\" a 1 m e 1", "3: the eccentricity must be at least 0 and less than 1"},
        {"orbit \"A\" a 1 m peri 1 longperi 1", "3: the pericentre is given twice"},
        {"orbit \"A\" a 1 m anomaly 1 longitude 1", "3: the place on the orbit is given twice"},
        {"orbit \"A\" a 1 m\nat 1 0 0 m", "4: the orbit says this already"},
        {"at 1 0 0 m\norbit \"A\" a 1 m",
         "4: an orbit says itself where the body is and how it moves"},
    };
    for (const auto& [statement, fault] : bodyFaults)
        EXPECT_EQ(Fault(std::string("epoch \"E\"\nbody \"B\"\n") + statement), fault);
    std::string deep = "epoch \"E\"\n";
    for (int i = 0; i < 1000; ++i)
        deep += "group \"G\"\n";
    EXPECT_EQ(Fault(deep), "34: too many groups within groups");
}

}  // namespace
