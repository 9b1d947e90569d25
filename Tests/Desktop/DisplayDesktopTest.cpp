// Displays of the real program, as a user works with them.
#include <cmath>
#include <cstdio>

#include "Tests/Desktop/DesktopTest.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

constexpr QRgb kSun = qRgb(255, 204, 0);
constexpr QRgb kSky = qRgb(6, 7, 12);

// Letters over the sky.
int CountWhite(const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); y++)
        for (int x = 0; x < picture.width(); x++) {
            const QRgb pixel = picture.pixel(x, y);
            count += qGray(pixel) > 180 && std::abs(qRed(pixel) - qBlue(pixel)) <= 50 ? 1 : 0;
        }
    return count;
}

// The place of the Sun's disc: the mean of its pixels. (The menu bar's icon, over the sky, may have
// some, too.)
QPoint PlaceOfSun(const QImage& picture) {
    QPoint sum;
    int count = 0;
    int top = 0;
    while (top < picture.height() && picture.pixel(3, top) != kSky)
        top++;
    for (int y = top; y < picture.height(); y++)
        for (int x = 0; x < picture.width(); x++)
            if (picture.pixel(x, y) == kSun) {
                sum += QPoint(x, y);
                count++;
            }
    return count == 0 ? QPoint(-1, -1) : sum / count;
}

class DisplayDesktopTest : public DesktopTest {
protected:
    // The planets, with their display in front.
    void SetUp() override {
        DesktopTest::SetUp();
        if (!desktop_) return;
        OpenExample("planets");
        display_ = desktop_->WaitForWindow("^Projection of ");
        // The other window may yet come in front.
        ASSERT_TRUE(DesktopSession::WaitFor([&] {
            desktop_->Activate(display_);
            return PlaceOfSun(desktop_->Picture(display_)).x() > 0;
        })) << desktop_->Output();
    }

    // Saves; the document's first display.
    BMessage Saved() {
        Save(display_);
        BMessage fields;
        EXPECT_EQ(Record(path_).FindMessage("Displays", 0, &fields), B_OK);
        return fields;
    }

    Window display_;
};

}  // namespace

TEST_F(DisplayDesktopTest, WheelDragDoubleClickAndPointer) {
    const QPoint sun = PlaceOfSun(desktop_->Picture(display_));
    // Without the names of all, that of what is under the pointer.
    desktop_->MoveMouse(display_, sun + QPoint(200, 0));
    const int named = CountWhite(desktop_->Picture(display_));
    desktop_->Press(display_, "ctrl+l");
    ASSERT_TRUE(desktop_->WaitForPicture(
        display_, [&](const QImage& picture) { return CountWhite(picture) < named - 100; }));
    const int letters = CountWhite(desktop_->Picture(display_));
    desktop_->MoveMouse(display_, sun);
    EXPECT_TRUE(desktop_->WaitForPicture(
        display_, [&](const QImage& picture) { return CountWhite(picture) > letters + 20; }));
    desktop_->MoveMouse(display_, sun + QPoint(200, 0));
    EXPECT_TRUE(desktop_->WaitForPicture(
        display_, [&](const QImage& picture) { return CountWhite(picture) < letters + 20; }));
    // What is under the wheel stays there; what is dragged comes along.
    desktop_->TurnWheel(display_, sun, 3);
    desktop_->Drag(display_, {300, 300}, {360, 250});
    EXPECT_TRUE(desktop_->WaitForPicture(display_, [&](const QImage& picture) {
        // Marks of the planets lay over the disc before.
        constexpr int kMark = 3;
        const QPoint off = PlaceOfSun(picture) - sun - QPoint(60, -50);
        return std::abs(off.x()) <= kMark && std::abs(off.y()) <= kMark;
    }));
    desktop_->DoubleClick(display_, sun + QPoint(60, -50));
    const QSize size = desktop_->Frame(display_).size();
    EXPECT_TRUE(desktop_->WaitForPicture(display_, [&](const QImage& picture) {
        return std::abs(PlaceOfSun(picture).x() - size.width() / 2) <= 1;
    }));
    EXPECT_TRUE(Saved().HasName("View follows"));
}

// Whatever the user does to the windows meanwhile.
TEST_F(DisplayDesktopTest, ARunHasTheBitsOfTheRunnerWithoutWindows) {
    const std::string original = (desktop_->Folder() / "original.orvek").string();
    std::filesystem::copy_file(path_, original);
    RunAWhile(display_, [&] {
        desktop_->TurnWheel(display_, {200, 200}, 2);
        desktop_->Resize(display_, {500, 700});
        desktop_->DoubleClick(display_, PlaceOfSun(desktop_->Picture(display_)));
        // The dialog of the axis, with keys alone; Z is on.
        desktop_->Press(display_, "alt+d");
        desktop_->Press("a");
        const char* const dialog = "^Choose Suppressed Axis$";
        for (const char* const key : {"Left", "Left", "Return"})
            desktop_->Press(desktop_->WaitForWindow(dialog), key);
        EXPECT_TRUE(desktop_->WaitForNoWindow(dialog));
    });
    int32 axis = 0;
    EXPECT_EQ(Saved().FindInt32("Sup axis", &axis), B_OK);
    EXPECT_EQ(axis, 1);
    const Bits withWindows = BitsOf(Read(path_).get());
    ASSERT_GT(withWindows.time, 0);
    char duration[32];
    std::snprintf(duration, sizeof duration, "%.17g", withWindows.time);
    const std::string alone = (desktop_->Folder() / "alone.orvek").string();
    const auto runner =
        desktop_->Start({ORVEK_RUN, "-q", "--for", duration, "--save", alone, original});
    ASSERT_EQ(runner->Wait(4 * DesktopSession::kPatience), (ChildProcess::Ending{0, 0}))
        << desktop_->Output();
    EXPECT_EQ(BitsOf(Read(alone).get()), withWindows);
}
