#include "Displays/Pictures/RunPicture.h"

#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr rgb_color kGreen{0, 255, 0, 255};
constexpr rgb_color kRed{255, 0, 0, 255};

// The second body goes once round the first, in so many reports.
void Turn(RunPicture* picture, int reports) {
    Body sun("sun", 0, kGreen, kRed, kOriginID);
    Body planet("planet", 1, kGreen, kGreen, kOriginID);
    sun.SetRadius(7e8);
    planet.SetPosition({1e11, 0, 0});
    picture->PrepareForGo({&sun, &planet}, 0);
    for (int i = 1; i <= reports; i++) {
        const double angle = 2 * kPi * i / reports;
        const double positions[] = {0, 0, 0, 1e11 * std::cos(angle), 1e11 * std::sin(angle), 0};
        const double time = i;
        picture->ReadData(1, &time, positions);
    }
}

// It fills the height but for a margin.
void ExpectCircle(const RunPicture& picture, double deviceScale) {
    PictureSettings settings;
    settings.width = 400;
    settings.height = 300;
    settings.deviceScale = deviceScale;
    const std::vector<std::byte> bytes = picture.Encode(settings);
    const QImage image = QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()),
                                          static_cast<int>(bytes.size()));
    ASSERT_EQ(image.size(), QSize(400, 300) * deviceScale);
    const auto greenAt = [&](double x, double y) {
        return qGreen(image.pixel(static_cast<int>(x), static_cast<int>(y)));
    };
    // The middle of a pixel of the view.
    const double middleX = (image.width() + deviceScale) / 2;
    const double middleY = (image.height() + deviceScale) / 2;
    const double radius = image.height() * 0.42;
    // Every place of the circle is drawn ...
    for (int i = 0; i < 720; i++) {
        const double angle = kPi * i / 360;
        // Smoothed: two pixels may share it.
        EXPECT_GT(greenAt(middleX + radius * std::cos(angle), middleY + radius * std::sin(angle)),
                  40)
            << "half degree " << i;
    }
    // ... and nothing that is farther from it than a pixel.
    for (int x = 0; x < image.width(); x++)
        for (int y = 0; y < image.height(); y++)
            ASSERT_TRUE(std::abs(std::hypot(x + 0.5 - middleX, y + 0.5 - middleY) - radius) <=
                            1.5 * deviceScale ||
                        greenAt(x, y) < 20)
                << x << ", " << y;
    EXPECT_EQ(qRed(image.pixel(static_cast<int>(middleX), static_cast<int>(middleY))), 255);
}

}  // namespace

// Axis, scale and mergers are seen in the pictures that the program without windows makes.
TEST(RunPicture, FitsTheWholeRunOrASampleOfIt) {
    RunPicture whole;
    EXPECT_TRUE(whole.Encode({}).empty());
    Turn(&whole, 3000);
    for (const double scale : {1.0, 2.0})
        ExpectCircle(whole, scale);
    RunPicture sample(6 * 500);
    Turn(&sample, 20'000);
    ExpectCircle(sample, 1.0);
}
