#include "RunPicture.h"

#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <numbers>

namespace {

constexpr rgb_color kGreen{0, 255, 0, 255};
constexpr rgb_color kRed{255, 0, 0, 255};

class RunPictureTest : public testing::Test {
protected:
    RunPictureTest() {
        for (const double x : {0.0, 1e11}) {
            bodies_.push_back(std::make_unique<Body>("body", static_cast<int64>(bodies_.size()),
                                                     kGreen, kRed, kOriginID));
            bodies_.back()->SetPosition({x, 0, 0});
            bodies_.back()->SetRadius(x == 0.0 ? 7e8 : 0.0);
        }
    }

    [[nodiscard]] std::vector<Body*> Bodies() const { return {bodies_[0].get(), bodies_[1].get()}; }

    // Once round the first body, in so many reports.
    void Turn(RunPicture* picture, int reports) {
        for (int i = 1; i <= reports; i++) {
            const double angle = 2 * std::numbers::pi * i / reports;
            const double positions[] = {0, 0, 0, 1e11 * std::cos(angle), 1e11 * std::sin(angle), 0};
            const double time = i;
            picture->ReadData(1, &time, positions);
        }
    }

    QImage Draw(const RunPicture& picture, const PictureSettings& settings) {
        const std::vector<std::byte> bytes = picture.Encode(settings);
        return QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()),
                                static_cast<int>(bytes.size()));
    }

    // The circle's four ends and its middle, for a circle that fills the height but for a margin.
    static void ExpectCircle(const QImage& image) {
        const double radius = image.height() * 0.42;
        const auto isGreen = [&](double x, double y) {
            for (int dx = -2; dx <= 2; dx++)
                for (int dy = -2; dy <= 2; dy++)
                    if (qGreen(image.pixel(static_cast<int>(x) + dx, static_cast<int>(y) + dy)) >
                        120)
                        return true;
            return false;
        };
        const double x = image.width() / 2.0;
        const double y = image.height() / 2.0;
        for (int i = 0; i < 90; i++) {
            const double angle = 2 * std::numbers::pi * i / 90;
            EXPECT_TRUE(isGreen(x + radius * std::cos(angle), y + radius * std::sin(angle))) << i;
        }
        EXPECT_EQ(qRed(image.pixel(static_cast<int>(x), static_cast<int>(y))), 255);
        EXPECT_FALSE(isGreen(x + radius / 2, y));
    }

    std::vector<std::unique_ptr<Body>> bodies_;
};

}  // namespace

TEST_F(RunPictureTest, FitsTheWholeRun) {
    RunPicture picture;
    EXPECT_TRUE(picture.Encode({}).empty());
    picture.PrepareForGo(Bodies(), 0);
    Turn(&picture, 3000);
    PictureSettings settings;
    settings.width = 400;
    settings.height = 300;
    const QImage image = Draw(picture, settings);
    EXPECT_EQ(image.size(), QSize(400, 300));
    ExpectCircle(image);
    settings.deviceScale = 2.0;
    const QImage fine = Draw(picture, settings);
    EXPECT_EQ(fine.size(), QSize(800, 600));
    ExpectCircle(fine);

    // Seen from the side it is a line.
    settings.deviceScale = 1.0;
    settings.axis = Projection::kX;
    const QImage side = Draw(picture, settings);
    EXPECT_GT(qGreen(side.pixel(60, 150)), 120);
    EXPECT_LT(qGreen(side.pixel(200, 100)), 20);
}

TEST_F(RunPictureTest, KeepsASampleOfALongRun) {
    RunPicture picture(6 * 500);
    picture.PrepareForGo(Bodies(), 0);
    Turn(&picture, 20'000);
    PictureSettings settings;
    settings.width = 400;
    settings.height = 300;
    ExpectCircle(Draw(picture, settings));
}

// When two bodies have merged the run goes on with fewer.
TEST_F(RunPictureTest, DrawsWhatWasBeforeAMerger) {
    RunPicture picture;
    picture.PrepareForGo(Bodies(), 0);
    Turn(&picture, 1000);
    picture.PrepareForGo({bodies_[0].get()}, 1000);
    const double time = 1001;
    const double place[] = {0, 0, 0};
    picture.ReadData(1, &time, place);
    PictureSettings settings;
    settings.width = 400;
    settings.height = 300;
    ExpectCircle(Draw(picture, settings));
}

TEST_F(RunPictureTest, TakesAScale) {
    RunPicture picture;
    picture.PrepareForGo(Bodies(), 0);
    PictureSettings settings;
    settings.width = 400;
    settings.height = 300;
    settings.scale = 1e-9;  // the second body at 100 pixels
    const QImage image = Draw(picture, settings);
    EXPECT_EQ(qRed(image.pixel(300, 150)), 255);
    EXPECT_EQ(qRed(image.pixel(200, 150)), 255);
}
