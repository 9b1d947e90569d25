// What a screen reader is told of the program's windows, and the guide's first lesson with clicks
// where it says "click".
#include <algorithm>

#include "Tests/Desktop/DesktopTest.h"
#include "Tests/Desktop/ScreenReader.h"

namespace {

const std::string kWindow = "New Simulation";

class ScreenReaderDesktopTest : public DesktopTest {
protected:
    using Thing = ScreenReader::Thing;

    void SetUp() override {
        DesktopTest::SetUp();
        if (!desktop_) return;
        if (const std::string missing = ScreenReader::MissingProgram(); !missing.empty())
            GTEST_SKIP() << missing << " is not installed (Tools/packages.txt)";
        reader_.emplace(&*desktop_);
        ASSERT_TRUE(reader_->IsReady());
        StartProgram({});
        ASSERT_FALSE(Find("text", "Name:").role.empty());
    }
    void TearDown() override {
        DesktopTest::TearDown();
        reader_.reset();
    }

    Thing Find(const std::string& role, const std::string& name) {
        return reader_->Find(role, name);
    }
    // What stands in a line is this, or soon will be.
    bool Holds(const std::string& line, const std::string& text) {
        return reader_->WaitFor([&] {
            for (const Thing& thing : reader_->Look())
                if (thing.role == "text" && thing.name == line) return thing.text == text;
            return false;
        });
    }
    void ClickInto(const std::string& line) { desktop_->Click(Find("text", line).frame.center()); }
    void ClickAndType(const std::string& line, const std::string& text) {
        ClickInto(line);
        desktop_->Type(text);
        desktop_->Press("Return");
    }
    // From the list of bodies, in which this one is shown; `key` goes to another one.
    void ChooseBody(const std::string& shown, const std::string& key) {
        desktop_->Click(Find("combo box", shown).frame.center());
        desktop_->Press(key);
        desktop_->Press("Return");
    }

    std::optional<ScreenReader> reader_;
};

}  // namespace

TEST_F(ScreenReaderDesktopTest, EverythingHasItsRoleAndSaysWhatItIs) {
    EXPECT_EQ(Find("frame", kWindow).window, kWindow);
    EXPECT_FALSE(Find("frame", "Projection of").role.empty());
    // A unit belongs to its field and is part of what is said.
    for (const char* const unit : {"Mass: unit Me", "Radius: unit Re", "Position unit AU",
                                   "Velocity unit km/s", "Time: unit yr", "Order: 4"})
        EXPECT_EQ(Find("combo box", unit).window, kWindow) << unit;
    EXPECT_EQ(Find("menu item", "Jupiter Masses").window, kWindow);
    EXPECT_EQ(Find("text", "Name:").text, "BoskVeld");
    const std::string about = Find("label", "2 bodies").description;
    EXPECT_FALSE(about.empty());

    // What happens is heard, and so is what is wrong.
    ClickAndType("Mass:", "2 Mj");
    EXPECT_FALSE(Find("combo box", "Mass: unit Mj").role.empty());
    desktop_->Type("heavy");  // Enter has selected all
    desktop_->Press("Return");
    EXPECT_TRUE(reader_->WaitFor(
        [&] { return Find("text", "Mass:").description.starts_with("Not a number"); }));
    EXPECT_TRUE(Holds("Mass:", "heavy"));
    desktop_->Press("Escape");
    EXPECT_TRUE(Holds("Mass:", "2"));
    EXPECT_EQ(Find("text", "Mass:").description.find("Not a number"), std::string::npos);
    // What says why lies over the fields below, and is in nobody's way.
    desktop_->Press("ctrl+a");
    desktop_->Type("heavy");
    desktop_->Press("Return");
    EXPECT_TRUE(reader_->WaitFor(
        [&] { return Find("text", "Mass:").description.starts_with("Not a number"); }));
    ClickAndType("Radius:", "5000 km");
    EXPECT_TRUE(Holds("Radius:", "5000"));
    desktop_->Press("ctrl+g");
    EXPECT_TRUE(reader_->WaitFor(
        [&] { return Find("label", "2 bodies").name.find("steps/s") != std::string::npos; }));
    desktop_->Press("ctrl+g");

    // A dialog is none of the windows that stay.
    const Window display = desktop_->WaitForWindow("^Projection");
    desktop_->Press(display, "alt+d");
    desktop_->Press("s");
    EXPECT_FALSE(Find("dialog", "Choose Display Scale").role.empty());
}

// Nobody who is told to click and type expects "ArrakisStar" and 11.1 solar masses.
TEST_F(ScreenReaderDesktopTest, TheFirstLessonTakenLiterally) {
    ChooseBody("BoskVeld", "Home");
    ASSERT_TRUE(Holds("Name:", "Arrakis"));
    ClickAndType("Name:", "Star");
    ClickAndType("Mass:", "1.1 Ms");
    EXPECT_TRUE(Holds("Name:", "Star"));
    EXPECT_TRUE(Holds("Mass:", "1.1"));
    ChooseBody("Star", "End");
    ASSERT_TRUE(Holds("Name:", "BoskVeld"));
    ClickAndType("Name:", "Planet");
    ClickAndType("Mass:", "1 Mj");
    ClickAndType("Radius:", "70000 km");
    ClickAndType("Velocity Vx:", "0");
    ClickAndType("Velocity Vy:", "75000 kph");
    ClickAndType("Velocity Vz:", "2 km/s");
    EXPECT_TRUE(Holds("Name:", "Planet"));
    EXPECT_TRUE(Holds("Mass:", "1"));
    EXPECT_TRUE(Holds("Radius:", "70000"));
    EXPECT_TRUE(Holds("Velocity Vx:", "0"));
    EXPECT_TRUE(Holds("Velocity Vy:", "20.83333"));
    EXPECT_TRUE(Holds("Velocity Vz:", "2"));
    // Coming back from another window is no different.
    ClickInto("Name:");
    const Window display = desktop_->WaitForWindow("^Projection");
    desktop_->Activate(display);
    ClickAndType("Name:", "World");
    EXPECT_TRUE(Holds("Name:", "World"));
    ClickInto("Velocity Vy:");
    EXPECT_TRUE(reader_->WaitFor(
        [&] { return Find("text", "Velocity Vy:").text.starts_with("20.83333333333333"); }));
}
