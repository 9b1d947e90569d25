// Motion as it is seen on the screen: what each picture shows tells its time.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>

#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Simulation/Document/WindowFields.h"
#include "Tests/Desktop/DesktopTest.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

constexpr double kAU = 1.495978707e11;
constexpr double kYear = 365.25 * 86400.0;
constexpr double kYearsPerSecond = 0.46;  // once around in four seconds
constexpr double kPictures = 60.0;
constexpr double kCircle = 1.5 * kAU;
const double kTurnPerSecond = std::sqrt(kSunGM / (kCircle * kCircle * kCircle));

// Where the pixels of a color are, each as much as it has of it.
QPointF PlaceOf(const QImage& picture, bool isGreen) {
    QPointF sum;
    double all = 0.0;
    for (int y = 0; y < picture.height(); y++)
        for (int x = 0; x < picture.width(); x++) {
            const QRgb pixel = picture.pixel(x, y);
            const int much = isGreen ? qGreen(pixel) - std::max(qRed(pixel), qBlue(pixel))
                                     : qRed(pixel) - std::max(qGreen(pixel), qBlue(pixel));
            if (much < 30) continue;
            sum += much * QPointF(x, y);
            all += much;
        }
    return all > 0.0 ? sum / all : QPointF(-1.0, -1.0);
}

double AngleIn(const QImage& picture) {
    const QPointF way = PlaceOf(picture, true) - PlaceOf(picture, false);
    return std::atan2(-way.y(), way.x());
}

class PaceDesktopTest : public DesktopTest {
protected:
    // A red star, and a green planet that goes around it on a circle.
    void SetUp() override {
        DesktopTest::SetUp();
        if (!desktop_) return;
        Epoch epoch;
        epoch.SetName("Circle");
        epoch.SetOrder(4);
        epoch.SetCutoff(1e-6);  // two reports in a picture
        const auto add = [&epoch](std::unique_ptr<Body> body, rgb_color color) {
            body->SetRadius(0.06 * kAU);
            body->SetDiscColor(color);
            body->SetTrailOn(false);
            ASSERT_EQ(epoch.RootSystem()->AddChild(body.release()), B_OK);
        };
        add(MakeBody("Star", 0, kSunGM, {}, {}), {255, 0, 0, 255});
        add(MakeBody("Planet", 1, 0.0, {kCircle, 0, 0}, {0, kTurnPerSecond * kCircle, 0}),
            {0, 255, 0, 255});
        BMessage record = RecordOf({&epoch});
        BMessage display;
        ASSERT_EQ(Record(CopyExample("planets")).FindMessage(kDisplaysField, 0, &display), B_OK);
        record.AddMessage(kDisplaysField, &display);
        path_ = (desktop_->Folder() / "circle.orvek").string();
        std::ofstream(path_, std::ios::binary) << FileOf(record);
        StartProgram({path_});
    }
};

}  // namespace

// From any picture to a later one a whole number of equal steps passes, within 5 % of a step, also
// where the machine is late and pictures are left out.
TEST_F(PaceDesktopTest, PicturesOnTheScreenAreEvenlyApart) {
    const Window window = WaitForSimulation(path_);
    const Window display = desktop_->WaitForWindow("^Projection of ");
    ASSERT_TRUE(desktop_->WaitForPicture(
        display, [](const QImage& picture) { return PlaceOf(picture, true).x() > 0.0; }));
    Enter(window, kPace, "0.46 yr");
    std::vector<double> angles;
    RunAWhile(window, [&] {
        desktop_->Activate(display);
        for (int i = 0; i < 60; i++)
            angles.push_back(AngleIn(desktop_->Picture(display)));
    });
    const double step = kTurnPerSecond * kYearsPerSecond * kYear / kPictures;
    std::vector<double> errors;  // parts of a step
    for (std::size_t i = 1; i < angles.size(); i++) {
        const double way =
            std::remainder(angles[i] - angles[i - 1] - std::numbers::pi, 2.0 * std::numbers::pi) +
            std::numbers::pi;
        const double steps = std::round(way / step);
        if (steps >= 1.0) errors.push_back(std::abs(way / step - steps));
    }
    ASSERT_GE(errors.size(), 20u);
    std::ranges::sort(errors);
    EXPECT_LT(errors[errors.size() / 2], 0.05) << "worst " << errors.back();
}
