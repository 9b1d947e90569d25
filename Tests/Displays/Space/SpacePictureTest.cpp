// What is drawn where: pictures of space made of known curves and bodies.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "Displays/Space/SpaceDrawing.h"
#include "Displays/Space/SpaceRasterizer.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int32 kWidth = 640;
constexpr int32 kHeight = 480;
constexpr double kRadius = 1e11;

SpaceOptions Bare() {
    SpaceOptions options;
    options.ecliptic = options.axes = false;
    return options;
}

// On a circle about the origin in the x-y plane; time is the angle.
KeptTrails::Trail Circle(double radius, int32 samples, rgb_color color) {
    KeptTrails::Trail trail{1, color, {}};
    for (int32 i = 0; i <= samples; i++) {
        const double angle = 2.0 * kPi * i / samples;
        const double x = radius * std::cos(angle);
        const double y = radius * std::sin(angle);
        trail.samples.push_back({angle, {x, y, 0.0}, {-y, x, 0.0}, i > 0});
    }
    return trail;
}

SpaceBody MakeBody(int64 id, ThreeVector position, double radius, rgb_color color) {
    SpaceBody body;
    body.id = id;
    body.position = position;
    body.radius = radius;
    body.color = color;
    return body;
}

Camera MakeCamera(bool isParallel) {
    Camera camera;
    camera.LookFrom(0.4, 0.5);
    camera.Roll(0.2, 0.1);
    camera.distance = 3.2 * kRadius;
    camera.isParallel = isParallel;
    return camera;
}

PixelBuffer Draw(const SpaceScene& scene, const Camera& camera, const SpaceOptions& options,
                 int32 threads = 1) {
    PixelBuffer pixels(kWidth, kHeight, 0);
    SpaceRasterizer rasterizer(threads);
    const SpaceMap map(camera, kWidth, kHeight);
    SpaceDrawing drawing(scene, camera, options, map, 1.0);
    drawing.Find(false, rasterizer.Team());
    rasterizer.Draw(drawing.Items(), ToPixel(options.Sky()), 1.0, &pixels);
    return pixels;
}

bool AreEqual(const PixelBuffer& a, const PixelBuffer& b) {
    return std::equal(a.Row(0), a.Row(0) + kWidth * kHeight, b.Row(0));
}

int32 CountDrawn(const PixelBuffer& pixels) {
    const Pixel sky = ToPixel(SpaceOptions().Sky());
    return static_cast<int32>(std::count_if(pixels.Row(0), pixels.Row(0) + kWidth * kHeight,
                                            [sky](Pixel pixel) { return pixel != sky; }));
}

}  // namespace

TEST(SpacePictureTest, ACircleSeenAtAnAngleIsTheRightEllipseToAPixel) {
    for (const bool isParallel : {true, false}) {
        for (const int32 samples : {12, 300}) {
            SpaceScene scene;
            scene.trails.push_back(Circle(kRadius, samples, {0, 255, 0, 255}));
            const Camera camera = MakeCamera(isParallel);
            const PixelBuffer pixels = Draw(scene, camera, Bare());
            const SpaceMap map(camera, kWidth, kHeight);
            constexpr int32 kPlaces = 4000;
            std::vector<SpaceMap::Point> ellipse;
            for (int32 i = 0; i < kPlaces; i++) {
                const double angle = 2.0 * kPi * i / kPlaces;
                ellipse.push_back(map.Project(
                    map.See({kRadius * std::cos(angle), kRadius * std::sin(angle), 0.0})));
            }
            const Pixel sky = ToPixel(SpaceOptions().Sky());
            int32 bare = 0;
            for (const SpaceMap::Point& point : ellipse)
                if (pixels.Row(static_cast<int32>(point.y))[static_cast<int32>(point.x)] == sky)
                    bare++;
            EXPECT_EQ(bare, 0) << isParallel << samples;
            double farthest = 0.0;
            for (int32 y = 0; y < kHeight; y++)
                for (int32 x = 0; x < kWidth; x++) {
                    if (pixels.Row(y)[x] == sky) continue;
                    double least = 1e9;
                    for (const SpaceMap::Point& point : ellipse)
                        least = std::min(least, std::hypot(x + 0.5 - point.x, y + 0.5 - point.y));
                    farthest = std::max(farthest, least);
                }
            EXPECT_LT(farthest, 1.6) << isParallel << samples;
        }
    }
}

TEST(SpacePictureTest, PicturesAreTheSameOnAnyNumberOfThreads) {
    std::mt19937 engine(3);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const auto shade = [&] { return static_cast<uint8>(128 + 127 * unit(engine)); };
    SpaceScene scene;
    for (int32 i = 0; i < 60; i++) {
        const rgb_color color{shade(), shade(), shade(), 255};
        SpaceBody body =
            MakeBody(i, {kRadius * unit(engine), kRadius * unit(engine), kRadius * unit(engine)},
                     4e9 * unit(engine) * unit(engine), color);
        body.gm = i == 0 ? 1e20 : 1e10;
        body.velocity = {2e4 * unit(engine), 2e4 * unit(engine), 0.0};
        scene.bodies.push_back(body);
        scene.trails.push_back(Circle(kRadius * (0.3 + 0.02 * i), 400, color));
    }
    SpaceOptions options;
    options.orbits = options.velocities = options.accelerations = true;
    const PixelBuffer one = Draw(scene, MakeCamera(false), options, 1);
    EXPECT_GT(CountDrawn(one), 20'000);
    for (const int32 threads : {2, 3, 8})
        EXPECT_TRUE(AreEqual(one, Draw(scene, MakeCamera(false), options, threads))) << threads;
}

TEST(SpacePictureTest, ManySamplesAreDrawnWithFewerLinesWhileTheCameraMoves) {
    SpaceScene scene;
    for (int32 i = 0; i < 20; i++)
        scene.trails.push_back(Circle((0.5 + 0.02 * i) * kRadius, 50'000, {200, 200, 200, 255}));
    // Half of one is not there.
    std::vector<Sample>& half = scene.trails[19].samples;
    half.erase(half.begin() + 20'008, half.begin() + 45'003);
    half[20'008].isJoined = false;
    scene.FindWholeTrails();
    struct Drawn {
        std::size_t lines = 0;
        double length = 0.0;
    };
    const auto draw = [&](bool isMoving) {
        const Camera camera = MakeCamera(true);
        const SpaceMap map(camera, 4 * kWidth, 4 * kHeight);
        SpaceRasterizer rasterizer(1);
        SpaceDrawing drawing(scene, camera, Bare(), map, 1.0);
        drawing.Find(isMoving, rasterizer.Team());
        Drawn drawn;
        for (const std::vector<Stroke>& list : drawing.Items().strokes)
            for (const Stroke& stroke : list) {
                drawn.lines++;
                drawn.length += std::hypot(static_cast<double>(stroke.x1 - stroke.x0),
                                           static_cast<double>(stroke.y1 - stroke.y0));
            }
        return drawn;
    };
    const Drawn rest = draw(false);
    const Drawn moving = draw(true);
    EXPECT_GT(rest.lines, 5 * moving.lines);
    // They are round still, and the gap is one.
    EXPECT_NEAR(moving.length / rest.length, 1.0, 0.005);
}

TEST(SpacePictureTest, WhatIsNearerCoversWhatIsFarther) {
    const Camera camera = MakeCamera(false);
    const SpaceMap map(camera, kWidth, kHeight);
    const auto at = [&](double nearness) { return nearness * kRadius * camera.Back(); };
    const auto middle = [](const PixelBuffer& pixels) {
        return ToColor(pixels.Row(kHeight / 2)[kWidth / 2]);
    };
    SpaceScene scene;
    // A light far to the side, that is not seen itself.
    scene.bodies = {MakeBody(0, 1e13 * camera.Back(), 1.0, {}),
                    MakeBody(1, at(0.5), 5e9, {255, 0, 0, 255}),
                    MakeBody(2, at(-0.5), 8e9, {0, 0, 255, 255})};
    EXPECT_GT(middle(Draw(scene, camera, Bare())).red, 200);
    std::swap(scene.bodies[1].position, scene.bodies[2].position);
    EXPECT_GT(middle(Draw(scene, camera, Bare())).blue, 200);
    // A trail before them is seen, and behind them not.
    scene.bodies.pop_back();
    KeptTrails::Trail trail{9, {0, 255, 0, 255}, {}};
    for (const double nearness : {0.9, -0.9}) {
        const ThreeVector way = kRadius * camera.right;
        const ThreeVector place = at(nearness);
        trail.samples = {{0.0, place - way, 2.0 * way, false}, {1.0, place + way, 2.0 * way, true}};
        scene.trails = {trail};
        const bool isGreen = middle(Draw(scene, camera, Bare())).green > 100;
        EXPECT_EQ(isGreen, nearness > 0.0);
    }
}

TEST(SpacePictureTest, LightComesFromTheStar) {
    Camera camera;  // looks down z
    camera.distance = 3.2 * kRadius;
    SpaceScene scene;
    scene.bodies = {MakeBody(0, {-kRadius, 0.0, 0.0}, 1e9, {255, 220, 120, 255}),
                    MakeBody(1, {}, 1e10, {200, 200, 200, 255})};
    const PixelBuffer pixels = Draw(scene, camera, Bare());
    const SpaceMap map(camera, kWidth, kHeight);
    const auto radius = static_cast<int32>(map.Scale() * 1e10 * 0.7);
    const Pixel* const row = pixels.Row(kHeight / 2);
    EXPECT_GT(ToColor(row[kWidth / 2 - radius]).green, 2 * ToColor(row[kWidth / 2 + radius]).green);
    // Around the one that is edited there is a ring.
    const int32 without = CountDrawn(pixels);
    scene.edited = 1;
    EXPECT_GT(CountDrawn(Draw(scene, camera, Bare())), without + 50);
    scene.edited = kNoSystemID;
    // Small bodies are seen all the same.
    scene.bodies[1].radius = 1.0;
    EXPECT_GE(
        CountDrawn(Draw(scene, camera, Bare())) -
            [&] {
                scene.bodies.pop_back();
                return CountDrawn(Draw(scene, camera, Bare()));
            }(),
        7);
}

TEST(SpacePictureTest, WhatCannotBeSeenDrawsNothing) {
    SpaceScene scene;
    scene.bodies = {MakeBody(0, {}, 7e8, {255, 220, 120, 255}),
                    MakeBody(1, {0.3 * kRadius, 0.0, 0.0}, 1e9, {90, 90, 255, 255})};
    scene.trails.push_back(Circle(kRadius, 30, {0, 255, 0, 255}));
    const Camera camera = MakeCamera(false);
    const PixelBuffer usual = Draw(scene, camera, Bare());
    constexpr double kHuge = 1e300;
    constexpr double kMost = std::numeric_limits<double>::max();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const ThreeVector behind = 2.0 * camera.distance * camera.Back();
    const ThreeVector atEye = camera.distance * camera.Back();
    for (const ThreeVector& place :
         {ThreeVector{kHuge, -kHuge, kHuge}, ThreeVector{kMost, kMost, kMost},
          ThreeVector{kNaN, 0.0, 0.0}, behind, atEye}) {
        SpaceScene with = scene;
        with.bodies.push_back(MakeBody(7, place, 1e9, {255, 0, 0, 255}));
        KeptTrails::Trail trail{7, {255, 0, 0, 255}, {}};
        for (int32 i = 0; i < 4; i++)
            trail.samples.push_back({1.0 * i, place, 1e-3 * place, i > 0});
        with.trails.push_back(trail);
        EXPECT_TRUE(AreEqual(usual, Draw(with, camera, Bare()))) << place.x;
        SpaceOptions all;
        all.orbits = all.velocities = all.accelerations = true;
        static_cast<void>(Draw(with, camera, all));
    }
    // A line through the eye's plane is seen as far as it lies before the eye.
    SpaceScene through;
    through.trails.push_back({3, {255, 255, 255, 255}, {}});
    const ThreeVector side = 0.2 * kRadius * camera.right;
    const ThreeVector way = behind + 4.0 * side;
    through.trails[0].samples = {{0.0, -side, way, false}, {1.0, behind + 3.0 * side, way, true}};
    EXPECT_GT(CountDrawn(Draw(through, camera, Bare())), 100);
    // Bodies at one place: the heaviest is seen.
    SpaceScene same;
    same.bodies = {MakeBody(0, {}, 5e9, {255, 255, 0, 255}),
                   MakeBody(1, {}, 5e9, {0, 0, 255, 255})};
    const PixelBuffer both = Draw(same, camera, SpaceOptions());
    EXPECT_GT(ToColor(both.Row(kHeight / 2)[kWidth / 2]).red, 200);
}
