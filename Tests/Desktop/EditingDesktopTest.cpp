// From an edit to a saved and reopened document, by keys alone where a user can do without the
// mouse.
#include "SampleDocument.h"
#include "SimulationDesktopTest.h"
#include "SimulationFile.h"

namespace {

constexpr double kKilometre = 1000.0;

// Where a list shows its selection; null when it does not.
QRect SelectedRow(const QImage& picture) {
    const auto isSelected = [&picture](int y) {
        int count = 0;
        for (int x = 0; x < picture.width(); x++) {
            const QRgb pixel = picture.pixel(x, y);
            count += qBlue(pixel) > qRed(pixel) + 80 ? 1 : 0;
        }
        return count > picture.width() / 2;
    };
    int top = 0;
    while (top < picture.height() && !isSelected(top))
        top++;
    int end = top;
    while (end < picture.height() && isSelected(end))
        end++;
    return {0, top, end == top ? 0 : picture.width(), end - top};
}

class EditingDesktopTest : public SimulationDesktopTest {
protected:
    void SetUp() override {
        SimulationDesktopTest::SetUp();
        if (!desktop_) return;
        window_ = OpenExample("circumbinary");
        path_ = (desktop_->Folder() / "circumbinary.orvek").string();
        originalBits_ = BitsOf(Read(path_).get());
    }
    void Undo(const Window& window) { desktop_->Press(window, "ctrl+z"); }
    void Redo(const Window& window) { desktop_->Press(window, "ctrl+shift+z"); }
    // What the document holds now; `from`: the window that was used last.
    std::unique_ptr<SimulationDocument> SavedFrom(const Window& from) {
        Save(from, path_);
        return Read(path_);
    }
    std::string OutlineFrom(const Window& from) { return Outline(SavedFrom(from)->Root()); }
    Bits BitsFrom(const Window& from) { return BitsOf(SavedFrom(from).get()); }

    Window OpenEpochs() {
        desktop_->Press(window_, "ctrl+e");
        return desktop_->WaitForWindow("^Epochs for circumbinary.orvek$");
    }

    Window window_;
    std::string path_;
    Bits originalBits_;
};

}  // namespace

TEST_F(EditingDesktopTest, QuantitiesWithUnitsAreUndoneAndRedoneToTheBit) {
    Enter(window_, kRadius, "5000 km");
    Enter(window_, kX, "384400 km");
    EXPECT_TRUE(IsMarked(window_, true));
    Undo(window_);
    Undo(window_);
    EXPECT_TRUE(IsMarked(window_, false));
    Redo(window_);
    Redo(window_);
    EXPECT_TRUE(IsMarked(window_, true));
    const auto edited = SavedFrom(window_);
    const Body* const planet = BodyNamed(edited.get(), "Planet");
    ASSERT_NE(planet, nullptr);
    EXPECT_EQ(planet->Radius(), 5000 * kKilometre);
    EXPECT_EQ(planet->Position().x, 384400 * kKilometre);
    Undo(window_);
    EXPECT_TRUE(IsMarked(window_, true));
    EXPECT_EQ(BitsFrom(window_), originalBits_);
}

TEST_F(EditingDesktopTest, ARunIsUndoneAndRedoneToTheBit) {
    RunAWhile(window_);
    EXPECT_EQ(OutlineFrom(window_), "Two suns(Two suns)");
    const Bits after = BitsOf(Read(path_).get());
    EXPECT_GT(after.time, 0);
    Undo(window_);
    EXPECT_EQ(OutlineFrom(window_), "Two suns");
    EXPECT_EQ(BitsOf(Read(path_).get()), originalBits_);
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

    // To the first one with keys, to the second one with the mouse.
    const QRect former = SelectedRow(desktop_->Picture(list));
    desktop_->Press(list, "Home");
    desktop_->Press("Return");
    EXPECT_EQ(BitsFrom(list), originalBits_);
    QRect first;
    ASSERT_TRUE(desktop_->WaitForPicture(list, [&](const QImage& picture) {
        first = SelectedRow(picture);
        return first.isValid() && first != former;
    }));
    desktop_->DoubleClick(list, first.center() + QPoint(0, first.height()));
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
    Save(list, path_);
    desktop_->Press(list, "ctrl+q");
    EXPECT_TRUE(EndsWell());

    StartProgram({path_});
    window_ = WaitForSimulation(path_);
    ASSERT_FALSE(desktop_->WaitForWindow("^Epochs for ").empty());
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
