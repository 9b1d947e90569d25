// Space displays: how many pictures a second they make of many trails, on all processors.
#include <cmath>
#include <numbers>
#include <random>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Displays/Space/SpaceCanvas.h"

namespace {

constexpr double kAU = 1.495978707e11;
constexpr float kWidth = 1920.0f;
constexpr float kHeight = 1080.0f;

// A star, and bodies that have gone once about it, on circles of all sizes that are a little
// inclined.
SpaceScene MakeScene(int32 bodies, int32 samples) {
    std::mt19937 engine(5);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    SpaceScene scene;
    for (int32 i = 0; i < bodies; i++) {
        SpaceBody body;
        body.id = i;
        body.gm = i == 0 ? 1.3e20 : 1e13;
        body.radius = i == 0 ? 7e8 : 6e6;
        const auto shade = static_cast<uint8>(100.0 + 155.0 * unit(engine));
        body.color = body.trailColor = {shade, 200, static_cast<uint8>(355 - shade), 255};
        const double radius = i == 0 ? 0.0 : (0.3 + 2.7 * unit(engine)) * kAU;
        const double tilt = 0.2 * unit(engine);
        KeptTrails::Trail trail{i, body.trailColor, {}};
        for (int32 j = 0; j < samples; j++) {
            const double angle = 2.0 * std::numbers::pi * (j + unit(engine) / 10) / samples;
            const double x = radius * std::cos(angle);
            const double y = radius * std::sin(angle);
            trail.samples.push_back({angle, {x, y, tilt * x}, {-y, x, -tilt * y}, j > 0});
        }
        body.position = trail.samples.back().position;
        scene.bodies.push_back(body);
        scene.trails.push_back(std::move(trail));
    }
    scene.FindWholeTrails();
    return scene;
}

double PicturesPerSecond(const SpaceScene& scene, bool isTurning) {
    SpaceCanvas canvas("bench");
    canvas.ResizeTo(kWidth - 1.0f, kHeight - 1.0f);
    Camera camera;
    camera.LookFrom(0.3, 0.6);
    camera.distance = 7.0 * kAU;
    const auto paint = [&] {
        camera.Roll(0.01, 0.003);
        canvas.Paint(scene, camera, {}, {}, isTurning);
    };
    return 1.0 / Measure({paint}, 1, 41)[0].median;
}

}  // namespace

void BenchSpace(BenchTable* table) {
    table->AddAtLeast("space at 1920x1080, 10 bodies with 10,000 points each", 60.0,
                      PicturesPerSecond(MakeScene(10, 10'000), true), "pictures/s");
    const SpaceScene many = MakeScene(1000, 1000);
    table->AddAtLeast("the same, 1,000 bodies with 1,000 points each, while it is turned", 30.0,
                      PicturesPerSecond(many, true), "pictures/s");
    table->AddFigure("at rest", PicturesPerSecond(many, false), "pictures/s");
}
