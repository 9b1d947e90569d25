// From an edit to a saved and reopened document. Nothing in a simulation's window needs the mouse.
#include "Tests/Desktop/DesktopTest.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

const char* const kDisplay = "^Projection of ";
const char* const kGuide = "^Guide to Orvek$";
constexpr double kAstronomicalUnit = 149597870660.0;
constexpr double kKilometre = 1000.0;
constexpr double kYear = 31556925.2;
constexpr double kKilogram = 6.672e-11;  // as a gravitational parameter

class EditingDesktopTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        if (!desktop_) return;
        window_ = OpenExample("circumbinary");
        originalBits_ = BitsOf(Read(path_).get());
    }
    void Undo(const Window& window) { desktop_->Press(window, "ctrl+z"); }
    void Redo(const Window& window) { desktop_->Press(window, "ctrl+shift+z"); }
    // What the document holds now; `from`: the window that was used last.
    std::unique_ptr<SimulationDocument> SavedFrom(const Window& from) {
        Save(from);
        return Read(path_);
    }
    std::string OutlineFrom(const Window& from) { return Outline(SavedFrom(from)->Root()); }
    Bits BitsFrom(const Window& from) { return BitsOf(SavedFrom(from).get()); }

    // Goes on to the field and types; whoever comes to the next one has entered it.
    void Type(Field field, const std::string& text) {
        GoTo(window_, field);
        desktop_->Type(text);
    }
    void ChooseUnit(Field field, const std::string& letter) {
        GoTo(window_, field);
        desktop_->Press("space");
        desktop_->Press(letter);
    }
    // A menu and one of its items, both by their letters.
    void Choose(const std::string& menu, const std::string& item) {
        desktop_->Press(window_, "alt+" + menu);
        desktop_->Press(item);
    }
    Window OpenEpochs() {
        desktop_->Press(window_, "ctrl+e");
        return desktop_->WaitForWindow("^Epochs for circumbinary.orvek$");
    }

    Window window_;
    Bits originalBits_;
};

}  // namespace

TEST_F(EditingDesktopTest, EditsAndARunAreUndoneAndRedoneToTheBit) {
    Enter(window_, kRadius, "5000 km");
    Enter(window_, kX, "384400 km");
    EXPECT_TRUE(IsMarked(window_, true));
    Undo(window_);
    Undo(window_);
    EXPECT_TRUE(IsMarked(window_, false));
    Redo(window_);
    Redo(window_);
    RunAWhile(window_);
    EXPECT_EQ(OutlineFrom(window_), "Two suns(Two suns)");
    const Bits after = BitsOf(Read(path_).get());
    EXPECT_GT(after.time, 0);
    Undo(window_);
    const auto edited = SavedFrom(window_);
    EXPECT_EQ(Outline(edited->Root()), "Two suns");
    const Body* const planet = BodyNamed(edited.get(), "Planet");
    ASSERT_NE(planet, nullptr);
    EXPECT_EQ(planet->Radius(), 5000 * kKilometre);
    EXPECT_EQ(planet->Position().x, 384400 * kKilometre);
    Undo(window_);
    EXPECT_TRUE(IsMarked(window_, true));
    EXPECT_EQ(BitsFrom(window_), originalBits_);
    Redo(window_);
    Redo(window_);
    EXPECT_EQ(OutlineFrom(window_), "Two suns(Two suns)");
    EXPECT_EQ(BitsOf(Read(path_).get()), after);
}

// Each key is pressed in another window.
TEST_F(EditingDesktopTest, TheSimulationsKeysWorkInAllOfItsWindows) {
    const Window display = desktop_->WaitForWindow(kDisplay);
    desktop_->Press(display, "ctrl+e");
    const Window epochs = desktop_->WaitForWindow("^Epochs for ");
    ASSERT_FALSE(epochs.empty());
    desktop_->Press(epochs, "ctrl+m");
    const Window animation = desktop_->WaitForWindow("^Animation options for ");
    ASSERT_FALSE(animation.empty());
    desktop_->Press(animation, "ctrl+w");
    EXPECT_TRUE(desktop_->WaitForNoWindow("^Animation options for "));
    desktop_->Press(display, "ctrl+m");
    EXPECT_TRUE(Comes("^Animation options for "));
    desktop_->Press(window_, "ctrl+t");
    const Window colors = desktop_->WaitForWindow("^Display options for ");
    ASSERT_FALSE(colors.empty());
    desktop_->Press(display, "alt+d");
    desktop_->Press("s");
    const Window scale = desktop_->WaitForWindow("^Choose Display Scale$");
    ASSERT_FALSE(scale.empty());
    for (const Window& window : {window_, display, epochs, animation, colors, scale}) {
        desktop_->Press(window, "F1");
        EXPECT_TRUE(Comes(kGuide)) << desktop_->Title(window);
        desktop_->Press("Escape");
        EXPECT_TRUE(desktop_->WaitForNoWindow(kGuide)) << desktop_->Title(window);
    }
    for (const Window& window : {display, epochs, animation, colors, scale}) {
        desktop_->Press(window, "ctrl+b");
        EXPECT_TRUE(IsMarked(window_, true)) << desktop_->Title(window);
        Undo(window_);
        EXPECT_TRUE(IsMarked(window_, false)) << desktop_->Title(window);
    }
}

TEST_F(EditingDesktopTest, EpochsAreNamedLoggedRestoredAndDeleted) {
    // A field that has the keyboard keeps no key of the menus.
    GoTo(window_, kName);
    RunAWhile(window_);
    const Window list = OpenEpochs();
    ASSERT_FALSE(list.empty());
    desktop_->Press(list, "F2");
    desktop_->Type("Kept");
    desktop_->Press("Return");
    EXPECT_EQ(OutlineFrom(list), "Two suns(Kept)");
    const Bits after = BitsOf(Read(path_).get());
    EXPECT_GT(after.time, 0);
    desktop_->Press(list, "alt+e");
    desktop_->Press("l");
    EXPECT_EQ(OutlineFrom(list), "Two suns(Kept(Kept))");

    desktop_->Press(list, "Home");
    desktop_->Press("Return");
    EXPECT_EQ(BitsFrom(list), originalBits_);
    desktop_->Press(list, "Down");
    desktop_->Press("Return");
    EXPECT_EQ(BitsFrom(list), after);

    desktop_->Press(list, "End");
    desktop_->Press("Delete");
    EXPECT_EQ(OutlineFrom(list), "Two suns(Kept)");
    Undo(list);
    EXPECT_EQ(OutlineFrom(list), "Two suns(Kept(Kept))");
    // What is half typed is saved, too.
    desktop_->Press(list, "Home");
    desktop_->Press("F2");
    desktop_->Type("Begin");
    EXPECT_EQ(OutlineFrom(list), "Begin(Kept(Kept))");
}

TEST_F(EditingDesktopTest, AReopenedDocumentIsSavedAgainAsItWas) {
    Enter(window_, kName, "Elsewhere");
    Enter(window_, kTime, "2.5 yr");
    RunAWhile(window_);
    desktop_->Press(window_, "ctrl+b");
    const Window list = OpenEpochs();
    desktop_->Press(list, "F2");
    desktop_->Type("With another");
    desktop_->Press("Return");
    // All windows come back where they were.
    const Window display = desktop_->WaitForWindow(kDisplay);
    desktop_->Resize(display, {640, 520});
    EXPECT_TRUE(DesktopSession::WaitFor([&] { return desktop_->Frame(display).width() == 640; }));
    const QRect frame = desktop_->Frame(display);
    Save(list);
    desktop_->Press(list, "ctrl+q");
    EXPECT_TRUE(EndsWell());

    StartProgram({path_});
    window_ = WaitForSimulation(path_);
    EXPECT_TRUE(Comes("^Epochs for "));
    const Window moved = desktop_->WaitForWindow(kDisplay);
    EXPECT_TRUE(DesktopSession::WaitFor([&] { return desktop_->Frame(moved) == frame; }));
    desktop_->Press(window_, "ctrl+shift+s");
    const Window panel = desktop_->WaitForWindow("^Save");
    const std::string again = (desktop_->Folder() / "again.orvek").string();
    desktop_->Press(panel, "ctrl+a");
    desktop_->Type(again);
    desktop_->Press("Return");
    ASSERT_FALSE(WaitForSimulation(again).empty());
    const auto text = [](const std::string& path) {
        BMessage record = Record(path);
        // The panel has been used since.
        for (const char* const field : {"Save at", "Save W", "Save H"})
            record.RemoveName(field);
        return record.ToText();
    };
    EXPECT_EQ(text(again), text(path_));
    const auto document = Read(again);
    EXPECT_NE(BodyNamed(document.get(), "Elsewhere"), nullptr);
    EXPECT_EQ(document->Portal()->BodiesInMassOrder().size(), 4u);
    EXPECT_EQ(Outline(document->Root()), "Two suns(Two suns(With another))");
}

// --- Keys ---

TEST_F(EditingDesktopTest, TheTabKeyGoesThroughAllFieldsInTheirOrder) {
    Type(kName, "Wanderer");
    Type(kMass, "5e24 kg");
    Type(kRadius, "70000 km");
    Type(kX, "1 AU");
    Type(kY, "2");
    Type(kZ, "-3");
    Type(kVx, "4 km/s");
    Type(kVy, "5");
    Type(kVz, "-6");
    Type(kTime, "2.5 yr");
    GoTo(window_, kUponGo);
    desktop_->Press("space");
    Type(kCutoff, "1e-9");
    GoTo(window_, kOrder);
    desktop_->Press("Up");
    // After the last one comes the first one, in which the next body is chosen.
    GoTo(window_, kEdit);
    desktop_->Press("Home");
    Save(window_);

    const auto document = Read(path_);
    const AbEpoch* const epoch = document->Portal()->FocusEpoch();
    EXPECT_EQ(epoch->Time(), 2.5 * kYear);
    EXPECT_FALSE(epoch->COMOnGo());
    EXPECT_EQ(epoch->Cutoff(), 1e-9);
    EXPECT_EQ(epoch->Order(), 12);
    const Body* const body = BodyNamed(document.get(), "Wanderer");
    ASSERT_NE(body, nullptr);
    EXPECT_DOUBLE_EQ(body->M(), 5e24 * kKilogram);
    EXPECT_EQ(body->Radius(), 70000 * kKilometre);
    const ThreeVector position = body->Position();
    EXPECT_EQ(position.x, kAstronomicalUnit);
    EXPECT_EQ(position.y, 2 * kAstronomicalUnit);
    EXPECT_EQ(position.z, -3 * kAstronomicalUnit);
    const ThreeVector velocity = body->Velocity();
    EXPECT_EQ(velocity.x, 4 * kKilometre);
    EXPECT_EQ(velocity.y, 5 * kKilometre);
    EXPECT_EQ(velocity.z, -6 * kKilometre);
    EXPECT_NE(document->Portal()->FocusSystem()->ID(), body->ID());
}

TEST_F(EditingDesktopTest, ButtonsListsAndTheSliderWorkWithKeys) {
    GoTo(window_, kTrailDisc);
    desktop_->Press("Return");
    ASSERT_TRUE(Comes("^Display options for "));
    desktop_->Press("ctrl+w");
    ASSERT_TRUE(desktop_->WaitForNoWindow("^Display options for "));
    // What is shown in another unit, or relative to something else, stays what it is.
    const auto before = Read(path_);
    ChooseUnit(kRadiusUnit, "k");
    GoTo(window_, kRelativeTo);
    desktop_->Press("End");
    ChooseUnit(kPositionUnit, "k");
    GoTo(window_, kSlider);
    desktop_->Press("Right");
    Save(window_);
    const auto changed = Read(path_);
    const Body* const was = BodyNamed(before.get(), "Planet");
    const Body* const is = BodyNamed(changed.get(), "Planet");
    EXPECT_EQ(is->RadiusUval(), kKilometre);
    EXPECT_EQ(is->PositionUval(), kKilometre);
    EXPECT_NE(is->RelativeTo(), was->RelativeTo());
    EXPECT_EQ(BitsOf(changed.get()), BitsOf(before.get()));
    EXPECT_GT(changed->Portal()->FocusEpoch()->Cutoff(), before->Portal()->FocusEpoch()->Cutoff());

    GoTo(window_, kNewBody);
    desktop_->Press("space");
    GoTo(window_, kNow);
    desktop_->Press("space");
    // Two runs; the button keeps the keyboard.
    GoTo(window_, kGo);
    for (int i = 0; i < 2; i++) {
        desktop_->Press("space", 2);
        Save(window_);
    }
    const auto run = Read(path_);
    EXPECT_EQ(run->Portal()->BodiesInMassOrder().size(), 4u);
    EXPECT_EQ(Outline(run->Root()), "Two suns(Two suns(Two suns))");
}

TEST_F(EditingDesktopTest, EveryMenuOpensByItsLetter) {
    Choose("b", "n");
    EXPECT_TRUE(IsMarked(window_, true));
    Choose("e", "u");
    EXPECT_TRUE(IsMarked(window_, false));
    Choose("n", "p");
    EXPECT_TRUE(DesktopSession::WaitFor(
        [&] { return desktop_->WindowsTitled("^Projection of ").size() == 2; }));
    Choose("s", "e");
    EXPECT_TRUE(Comes("^Epochs for "));
    Choose("f", "a");
    const Window panel = desktop_->WaitForWindow("^Save .* as$");
    desktop_->Press(panel, "Escape");
    EXPECT_TRUE(desktop_->WaitForNoWindow("^Save "));
    Choose("o", "n");
    EXPECT_TRUE(Comes("^New Simulation$"));
    Choose("o", "a");
    EXPECT_TRUE(Comes("^About Orvek$"));
}
