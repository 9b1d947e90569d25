#include "ProgramResources.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>
#include <string>

#include "BResources.h"
#include "Epoch.h"
#include "MassSystem.h"
#include "ResourceWriter.h"
#include "SimulationFile.h"

namespace {

constexpr type_code kTemplate = FourCC("kwzx");

// Resources that a test makes up.
class ResourceMaker {
public:
    void Text(int32 id, const std::string& text) { Data(B_STRING_TYPE, id, text + '\0'); }
    void Data(type_code type, int32 id, std::string_view data) {
        const auto* const begin = reinterpret_cast<const std::byte*>(data.data());
        EXPECT_TRUE(writer_.Add(type, id, "", {begin, begin + data.size()}));
    }
    [[nodiscard]] ProgramResources Read() const {
        BResources resources;
        EXPECT_EQ(resources.SetTo(writer_.File()), B_OK);
        return ProgramResources(resources);
    }

private:
    ResourceWriter writer_;
};

// This test program carries the resources of the real one.
class OwnResourcesTest : public testing::Test {
protected:
    std::string Label(int32 id) { return resources_.InterfaceLabel(id); }

    ProgramResources resources_;
};

TEST_F(OwnResourcesTest, BodyNamesGoThroughTheAlphabet) {
    EXPECT_EQ(resources_.CountBodyNames(), 206);
    EXPECT_STREQ(resources_.BodyName(0), "Arrakis");
    EXPECT_STREQ(resources_.BodyName(1), "BoskVeld");
    EXPECT_STREQ(resources_.BodyName(13), "Narn");
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
}

TEST_F(OwnResourcesTest, LabelsKeepBlanksQuotesAndEllipses) {
    EXPECT_EQ(Label(1502), " of ");
    EXPECT_EQ(Label(1515), "  OK  ");
    EXPECT_EQ(Label(2307), "Upon \"Go\"");
    EXPECT_EQ(Label(2313), "    ");
    EXPECT_EQ(Label(2316), " ");
    EXPECT_EQ(Label(1603), "Save As\xE2\x80\xA6");
    EXPECT_EQ(Label(3102), "Don't Save");
    for (const int32 shortcut : {1602, 1605, 1702, 1704, 1902, 2304, 2801, 2803, 2806})
        EXPECT_EQ(Label(shortcut).size(), 1u) << shortcut;
    EXPECT_EQ(Label(3200).substr(0, 6), "Orvek\n");
    EXPECT_NE(Label(3200).find("\n\nAn N-body gravitational simulator.\n\nCoding:\n   "),
              std::string::npos);
    EXPECT_NE(Label(3200).find("\n\nDesign:\n   "), std::string::npos);
    EXPECT_NE(Label(3200).find("\n\nAlpha testing:\n   "), std::string::npos);
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
    EXPECT_EQ(resources_.TimeUnits().Abbreviation(31556925.2), "yr");
    EXPECT_EQ(resources_.SpeedUnits().Abbreviation(1731456.8363), "AU/dy");
}

// The template holds what this program would itself write, and in the order in which it would.
TEST_F(OwnResourcesTest, TheTemplatesEpochIsAsTheProgramWritesOne) {
    BMessage stored;
    ASSERT_EQ(resources_.NewSimulation().FindMessage("Epochs", &stored), B_OK);
    EXPECT_EQ(stored.what, FourCC("ARCV"));
    const std::unique_ptr<BArchivable> object(Epoch::Instantiate(&stored));
    const auto* const epoch = dynamic_cast<Epoch*>(object.get());
    ASSERT_NE(epoch, nullptr);
    BMessage written(FourCC("ARCV"));
    ASSERT_EQ(epoch->Archive(&written, true), B_OK);
    EXPECT_EQ(stored.ToText(), written.ToText());

    EXPECT_EQ(epoch->Name(), "Genesis");
    EXPECT_EQ(epoch->TimeUval(), 31556925.2);
    EXPECT_TRUE(epoch->Writeable());
    EXPECT_EQ(epoch->Order(), 4);
    EXPECT_EQ(epoch->Cutoff(), 1e-11);
    const MassSystem* const root = epoch->RootSystem();
    EXPECT_EQ(root->ID(), -3);
    EXPECT_FALSE(root->TrailOn());
    EXPECT_EQ(root->RelativeTo(), -2);
    ASSERT_EQ(root->CountChildren(), 2);
    const MassSystem* const sun = root->ChildAt(0);
    EXPECT_EQ(sun->Name(), resources_.BodyName(0));
    EXPECT_EQ(sun->M(), 1.3271244e20);
    EXPECT_EQ(sun->Radius(), 637813700.0);
    EXPECT_EQ(sun->TrailColor(), (rgb_color{22, 255, 225, 255}));
    const MassSystem* const planet = root->ChildAt(1);
    EXPECT_EQ(planet->Name(), resources_.BodyName(1));
    EXPECT_EQ(planet->ID(), 1);
    EXPECT_EQ(planet->Position(), (ThreeVector{299195741320.0, 0.0, 0.0}));
    EXPECT_EQ(planet->Velocity(), (ThreeVector{3000.0, 14000.0, -4000.0}));
    EXPECT_EQ(planet->M(), 398600448000000.0);
    EXPECT_EQ(planet->SpeedUval(), 1000.0);
    EXPECT_EQ(planet->MassUval(), 398600448000000.0);
    EXPECT_EQ(planet->DiscColor(), (rgb_color{255, 195, 30, 255}));
    EXPECT_TRUE(planet->DiscOn());
}

// Each field with the type that its reader asks for.
TEST_F(OwnResourcesTest, TheTemplatesOwnFields) {
    const BMessage& record = resources_.NewSimulation();
    EXPECT_EQ(record.what, 0u);
    const auto int32Of = [](const BMessage& from, const char* name) {
        int32 value = -1;
        EXPECT_EQ(from.FindInt32(name, &value), B_OK) << name;
        return value;
    };
    const auto floatOf = [&](const char* name) {
        float value = -1.0f;
        EXPECT_EQ(record.FindFloat(name, &value), B_OK) << name;
        return value;
    };
    const auto pointOf = [&](const char* name) {
        BPoint value;
        EXPECT_EQ(record.FindPoint(name, &value), B_OK) << name;
        return value;
    };
    EXPECT_EQ(int32Of(record, "Cur Epoch"), 0);
    EXPECT_EQ(int32Of(record, "Segment length"), 2);
    EXPECT_EQ(int32Of(record, "Body Name Index"), 2);
    EXPECT_EQ(int32Of(record, "Disp type"), 1);
    int64 system = 0;
    EXPECT_EQ(record.FindInt64("Cur Sys", &system), B_OK);
    EXPECT_EQ(system, 1);
    EXPECT_EQ(floatOf("Updates per sec"), 80.0f);
    EXPECT_EQ(floatOf("Epoch W"), 19.583334f);
    EXPECT_EQ(floatOf("Epoch H"), 14.916667f);
    EXPECT_EQ(floatOf("Save W"), 31.0625f);
    EXPECT_EQ(floatOf("Save H"), 25.3125f);
    EXPECT_EQ(pointOf("Edit at"), (BPoint{4, 76}));
    EXPECT_EQ(pointOf("Anim at"), (BPoint{609, 559}));
    EXPECT_EQ(pointOf("Colors at"), (BPoint{667, 66}));
    EXPECT_EQ(pointOf("Epoch at"), (BPoint{363, 588}));
    EXPECT_EQ(pointOf("Save at"), (BPoint{402, 77}));
    for (const char* name : {"Anim Show", "Colors Show", "Epoch Show"}) {
        bool shown = true;
        EXPECT_EQ(record.FindBool(name, &shown), B_OK) << name;
        EXPECT_FALSE(shown) << name;
    }
    bool writeable = false;
    EXPECT_EQ(record.FindBool("Cur Ep Writ", &writeable), B_OK);
    EXPECT_TRUE(writeable);

    BMessage display;
    ASSERT_EQ(record.FindMessage("Displays", &display), B_OK);
    BRect frame;
    EXPECT_EQ(display.FindRect("Disp frame", &frame), B_OK);
    EXPECT_EQ(frame, (BRect{362, 73, 1019, 629}));
    double scale = 0.0;
    EXPECT_EQ(display.FindDouble("Scale", &scale), B_OK);
    EXPECT_EQ(scale, 1e-9);
    EXPECT_EQ(int32Of(display, "Sup axis"), 3);
    EXPECT_EQ(int32Of(display, "Ref to"), 3);
    double units = 0.0;
    EXPECT_EQ(display.FindDouble("Units", &units), B_OK);
    EXPECT_EQ(units, 1.0);
}

TEST(TemplateTest, IsADocumentInBigEndianOrder) {
    BResources own;
    ASSERT_EQ(own.SetToProgram(), B_OK);
    std::size_t size = 0;
    const auto* const file = static_cast<const char*>(own.LoadResource(kTemplate, 0, &size));
    ASSERT_NE(file, nullptr);
    const std::string_view bytes(file, size);
    EXPECT_TRUE(bytes.starts_with("KWZXNB00FOB1"));
    EXPECT_EQ(bytes.find("1BOF"), std::string_view::npos);
    EXPECT_EQ(own.LoadResource(kTemplate, "New Simulation", &size), file);
}

TEST(TemplateTest, WithoutAGoodOneTheRecordIsEmpty) {
    BResources own;
    ASSERT_EQ(own.SetToProgram(), B_OK);
    std::size_t size = 0;
    const auto* const file = static_cast<const char*>(own.LoadResource(kTemplate, 0, &size));
    ASSERT_NE(file, nullptr);
    const std::string good(file, size);
    std::string otherTag = good;
    otherTag[7] = '1';
    for (const std::string& bad : {otherTag, good.substr(0, 5), good.substr(0, 8),
                                   good.substr(0, good.size() - 1), std::string()}) {
        ResourceMaker maker;
        maker.Data(kTemplate, 0, bad);
        EXPECT_TRUE(maker.Read().NewSimulation().IsEmpty()) << bad.size();
    }
    EXPECT_TRUE(ResourceMaker().Read().NewSimulation().IsEmpty());
}

TEST(LabelsTest, AGapEndsItsRun) {
    ResourceMaker maker;
    maker.Text(1500, "first");
    maker.Text(1501, "second");
    maker.Text(1503, "behind the gap");
    maker.Text(1601, "without a first");
    maker.Text(3200, "last run");
    maker.Text(4007, "of another program");
    maker.Text(4130, "and another");
    const ProgramResources resources = maker.Read();
    EXPECT_EQ(resources.InterfaceLabel(1501), "second");
    EXPECT_EQ(resources.InterfaceLabel(1503), "");
    EXPECT_EQ(resources.InterfaceLabel(1601), "");
    EXPECT_EQ(resources.InterfaceLabel(3200), "last run");
    EXPECT_EQ(resources.InterfaceLabel(4007), "of another program");
    EXPECT_EQ(resources.InterfaceLabel(4130), "and another");
    EXPECT_EQ(resources.InterfaceLabel(-1), "");
}

TEST(BodyNamesTest, EndAtAGapOrAtAThousand) {
    ResourceMaker gap;
    gap.Text(0, "A");
    gap.Text(2, "C");
    EXPECT_EQ(gap.Read().CountBodyNames(), 1);

    ResourceMaker many;
    for (int32 i = 0; i < 1003; i++)
        many.Text(i, std::to_string(i));
    const ProgramResources resources = many.Read();
    EXPECT_EQ(resources.CountBodyNames(), 1000);
    EXPECT_STREQ(resources.BodyName(999), "999");
}

}  // namespace
