// From an edit to a saved and reopened document, by keys alone where a user can do without the
// mouse.
#include "DesktopTest.h"
#include "SampleDocument.h"
#include "SimulationFile.h"

namespace {

const char* const kDisplay = "^Projection of ";
constexpr double kKilometre = 1000.0;

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
        BMessage record;
        EXPECT_FALSE(SimulationFile::Read(path, &record).Failed());
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
