// Displays of the real program, as a user works with them.
#include <cmath>
#include <cstdio>
#include <utility>

#include "DesktopTest.h"
#include "SampleDocument.h"
#include "SimulationFile.h"

namespace {

const char* const kSimulation = "^planets";
const char* const kDisplay = "^Projection of ";
const char* const kAxisDialog = "^Choose Suppressed Axis$";
const char* const kScaleDialog = "^Choose Display Scale$";

// Neither sky nor text: something that moves has left it.
bool IsColorful(QRgb pixel) {
    const int least = std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)});
    const int most = std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)});
    return most - least > 50;
}

int CountColorful(const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); y++)
        for (int x = 0; x < picture.width(); x++)
            count += IsColorful(picture.pixel(x, y)) ? 1 : 0;
    return count;
}

// Letters over the sky.
int CountWhite(const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); y++)
        for (int x = 0; x < picture.width(); x++)
            count += qGray(picture.pixel(x, y)) > 180 && !IsColorful(picture.pixel(x, y)) ? 1 : 0;
    return count;
}

constexpr QRgb kSun = qRgb(255, 204, 0);
constexpr QRgb kSky = qRgb(6, 7, 12);

// The first row of the sky.
int SkyTop(const QImage& picture) {
    int y = 0;
    while (y < picture.height() && picture.pixel(3, y) != kSky)
        y++;
    return y;
}

// The place of the Sun's disc: the mean of its pixels. (The menu bar's icon may have some, too.)
QPoint PlaceOfSun(const QImage& picture) {
    QPoint sum;
    int count = 0;
    for (int y = SkyTop(picture); y < picture.height(); y++)
        for (int x = 0; x < picture.width(); x++)
            if (picture.pixel(x, y) == kSun) {
                sum += QPoint(x, y);
                count++;
            }
    return count == 0 ? QPoint(-1, -1) : sum / count;
}

// A document's first display.
BMessage DisplayFields(const std::string& path) {
    BMessage record;
    BMessage fields;
    EXPECT_FALSE(SimulationFile::Read(path, &record).Failed());
    EXPECT_EQ(record.FindMessage("Displays", 0, &fields), B_OK) << record.ToText();
    return fields;
}

class DisplayDesktopTest : public DesktopTest {
protected:
    // The planets, with their display in front.
    void Open() {
        path_ = CopyExample("planets");
        StartProgram({path_});
        // The simulation's window comes last, and in front.
        ASSERT_FALSE(desktop_->WaitForWindow(kSimulation).empty()) << desktop_->Output();
        display_ = desktop_->WaitForWindow(kDisplay);
        ASSERT_FALSE(display_.empty()) << desktop_->Output();
        desktop_->Activate(display_);
        ASSERT_TRUE(desktop_->WaitForPicture(
            display_, [](const QImage& picture) { return PlaceOfSun(picture).x() > 0; }));
    }

    // Presses Go, lets bodies leave trails, and presses Pause; `meanwhile` during the run.
    void RunAWhile(const std::function<void()>& meanwhile = [] {}) {
        desktop_->Press(display_, "ctrl+g");
        EXPECT_TRUE(desktop_->WaitForPicture(
            display_, [](const QImage& picture) { return CountColorful(picture) > 1500; }));
        meanwhile();
        desktop_->Press(display_, "ctrl+g");
        EXPECT_TRUE(HasStopped());
    }

    // Two looks that show the same.
    bool HasStopped() {
        QImage last;
        return desktop_->WaitForPicture(display_, [&](const QImage& picture) {
            return std::exchange(last, picture) == picture;
        });
    }

    // Saves and waits for the file.
    void Save() {
        const auto before = std::filesystem::last_write_time(path_);
        desktop_->Press(display_, "ctrl+s");
        ASSERT_TRUE(DesktopSession::WaitFor(
            [&] { return std::filesystem::last_write_time(path_) != before; }));
    }

    // Saves; the display then looks along that axis, over so many metres.
    void ExpectSaved(int32 axis, double metresAcross) {
        const int width = desktop_->Frame(display_).width();
        Save();
        const BMessage fields = DisplayFields(path_);
        int32 sightAlong = 0;
        double pixelsPerMetre = 0;
        fields.FindInt32("Sup axis", &sightAlong);
        fields.FindDouble("Scale", &pixelsPerMetre);
        EXPECT_EQ(sightAlong, axis);
        EXPECT_DOUBLE_EQ(pixelsPerMetre, width / metresAcross);
    }

    std::string path_;
    Window display_;
};

}  // namespace

TEST_F(DisplayDesktopTest, DialogsWorkWithKeysAlone) {
    Open();
    desktop_->Press(display_, "alt+d");
    desktop_->Press("a");
    const Window axis = desktop_->WaitForWindow(kAxisDialog);
    ASSERT_FALSE(axis.empty());
    // From Z, which is on, two buttons back; then the Enter key presses "Use".
    for (const char* const key : {"Left", "Left", "Return"})
        desktop_->Press(axis, key);
    ASSERT_TRUE(desktop_->WaitForNoWindow(kAxisDialog));

    desktop_->Press(display_, "alt+d");
    desktop_->Press("s");
    const Window scale = desktop_->WaitForWindow(kScaleDialog);
    ASSERT_FALSE(scale.empty());
    desktop_->Press(scale, "ctrl+a");
    desktop_->Type("10 AU");
    desktop_->Press("Return");
    ASSERT_TRUE(desktop_->WaitForNoWindow(kScaleDialog));

    // Escape changes nothing, and the close box is a "Use".
    desktop_->Press(display_, "alt+d");
    desktop_->Press("a");
    const Window again = desktop_->WaitForWindow(kAxisDialog);
    desktop_->Press(again, "Right");
    desktop_->Press("Escape");
    ASSERT_TRUE(desktop_->WaitForNoWindow(kAxisDialog));
    ExpectSaved(1, 10 * 1.4959787066e11);
}

TEST_F(DisplayDesktopTest, DialogsWorkWithTheMouse) {
    Open();
    const auto dialog = [&](int item, const char* title) {
        desktop_->Press(display_, "alt+d");
        for (int i = 0; i < item; i++)
            desktop_->Press("Down");
        desktop_->Press("Return");
        return desktop_->WaitForWindow(title);
    };
    // The X button stands left in the middle, "Use" right at the bottom, "Cancel" before it.
    const auto click = [&](const Window& window, QPoint fromRightBottom) {
        const QSize size = desktop_->Frame(window).size();
        desktop_->Click(window, QPoint(size.width(), size.height()) - fromRightBottom);
    };
    const Window axis = dialog(1, kAxisDialog);
    desktop_->Click(axis, QPoint(18, desktop_->Frame(axis).height() / 2));
    click(axis, {40, 20});
    ASSERT_TRUE(desktop_->WaitForNoWindow(kAxisDialog));
    const Window again = dialog(1, kAxisDialog);
    click(again, {140, 20});
    ASSERT_TRUE(desktop_->WaitForNoWindow(kAxisDialog));
    // The close box is a "Use".
    const Window scale = dialog(0, kScaleDialog);
    desktop_->Press(scale, "ctrl+a");
    desktop_->Type("2 AU");
    desktop_->Close(scale);
    ASSERT_TRUE(desktop_->WaitForNoWindow(kScaleDialog));
    ExpectSaved(1, 2 * 1.4959787066e11);
}

TEST_F(DisplayDesktopTest, WheelDragDoubleClickAndPointer) {
    Open();
    const QPoint sun = PlaceOfSun(desktop_->Picture(display_));
    ASSERT_GT(sun.x(), 0);
    // The name of what is under the pointer.
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
        const QPoint off = PlaceOfSun(picture) - sun - QPoint(60, -50);
        return std::abs(off.x()) <= 1 && std::abs(off.y()) <= 1;
    }));
    desktop_->DoubleClick(display_, sun + QPoint(60, -50));
    const QSize size = desktop_->Frame(display_).size();
    EXPECT_TRUE(desktop_->WaitForPicture(display_, [&](const QImage& picture) {
        return std::abs(PlaceOfSun(picture).x() - size.width() / 2) <= 1;
    }));
    Save();
    const BMessage fields = DisplayFields(path_);
    EXPECT_TRUE(fields.HasName("View follows"));
}

TEST_F(DisplayDesktopTest, TrailsSurviveResizingAndCovering) {
    Open();
    RunAWhile();
    desktop_->MoveMouse(display_, {100, 200});
    ASSERT_TRUE(HasStopped());
    const QImage before = desktop_->Picture(display_);
    // Something comes and goes in front of it.
    desktop_->Press(display_, "alt+d");
    desktop_->Press("s");
    ASSERT_FALSE(desktop_->WaitForWindow(kScaleDialog).empty());
    desktop_->Press("Escape");
    ASSERT_TRUE(desktop_->WaitForNoWindow(kScaleDialog));
    desktop_->Activate(display_);
    EXPECT_TRUE(desktop_->WaitForPicture(display_,
                                         [&](const QImage& picture) { return picture == before; }));
    // The middle of the picture stays the middle of the window, pixel by pixel.
    const QSize size = before.size();
    const auto middle = [](const QImage& picture, int bar) {
        const QPoint center(picture.width() / 2, bar + (picture.height() - bar) / 2);
        return picture.copy(QRect(center - QPoint(130, 130), QSize(260, 260)));
    };
    const int bar = SkyTop(before);
    for (const QSize other : {size + QSize(200, 120), size - QSize(100, 60), size}) {
        desktop_->Resize(display_, other);
        EXPECT_TRUE(desktop_->WaitForPicture(display_, [&](const QImage& picture) {
            return picture.size() == other && middle(picture, bar) == middle(before, bar);
        })) << other.width();
    }
}

// Whatever the user does to the windows meanwhile.
TEST_F(DisplayDesktopTest, ARunHasTheBitsOfTheRunnerWithoutWindows) {
    Open();
    const std::string original = (desktop_->Folder() / "original.orvek").string();
    std::filesystem::copy_file(path_, original);
    RunAWhile([&] {
        desktop_->TurnWheel(display_, {200, 200}, 2);
        desktop_->Resize(display_, {500, 700});
        desktop_->DoubleClick(display_, PlaceOfSun(desktop_->Picture(display_)));
        desktop_->Press(display_, "alt+d");
        desktop_->Press("a");
        const Window axis = desktop_->WaitForWindow(kAxisDialog);
        desktop_->Press(axis, "Left");
        desktop_->Press("Return");
        EXPECT_TRUE(desktop_->WaitForNoWindow(kAxisDialog));
    });
    Save();
    const auto bits = [](const std::string& path) {
        BMessage record;
        SimulationDocument document(nullptr);
        EXPECT_FALSE(SimulationFile::Read(path, &record).Failed());
        EXPECT_FALSE(document.Load(record).Failed());
        return BitsOf(&document);
    };
    const Bits withWindows = bits(path_);
    ASSERT_GT(withWindows.time, 0);
    char duration[32];
    std::snprintf(duration, sizeof duration, "%.17g", withWindows.time);
    const std::string alone = (desktop_->Folder() / "alone.orvek").string();
    const auto runner =
        desktop_->Start({ORVEK_RUN, "-q", "--for", duration, "--save", alone, original});
    ASSERT_EQ(runner->Wait(4 * DesktopSession::kPatience), (ChildProcess::Ending{0, 0}))
        << desktop_->Output();
    EXPECT_EQ(bits(alone), withWindows);
}

TEST_F(DisplayDesktopTest, QuitsAndCanBeOpenedAgainAtTheSamePlace) {
    Open();
    desktop_->Resize(display_, {640, 520});
    ASSERT_TRUE(DesktopSession::WaitFor([&] { return desktop_->Frame(display_).width() == 640; }));
    const QRect frame = desktop_->Frame(display_);
    Save();
    desktop_->Press(display_, "ctrl+q");
    EXPECT_TRUE(EndsWell());
    StartProgram({path_});
    display_ = desktop_->WaitForWindow(kDisplay);
    EXPECT_TRUE(DesktopSession::WaitFor([&] { return desktop_->Frame(display_) == frame; }))
        << desktop_->Frame(display_).left() << ", " << desktop_->Frame(display_).top();
}
