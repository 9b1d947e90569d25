#include "Displays/Space/Camera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "Displays/Space/SpaceMap.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void ExpectFrame(const Camera& camera) {
    EXPECT_NEAR(Length(camera.right), 1.0, 1e-14);
    EXPECT_NEAR(Length(camera.up), 1.0, 1e-14);
    EXPECT_NEAR(Dot(camera.right, camera.up), 0.0, 1e-14);
    EXPECT_GE(camera.distance, Camera::kMinDistance);
    EXPECT_LE(camera.distance, Camera::kMaxDistance);
    EXPECT_TRUE(IsFinite(camera.target));
}

class Random {
public:
    double Between(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(engine_);
    }
    ThreeVector Within(double size) {
        return {Between(-size, size), Between(-size, size), Between(-size, size)};
    }
    Camera MakeCamera() {
        Camera camera;
        camera.LookFrom(Between(-kPi, kPi), Between(-kPi / 2, kPi / 2));
        camera.Roll(Between(-3.0, 3.0), Between(-3.0, 3.0));
        camera.target = Within(1e12);
        camera.distance = std::pow(10.0, Between(8.0, 13.0));
        return camera;
    }

private:
    std::mt19937 engine_{7};
};

}  // namespace

TEST(CameraTest, PlacesAreSeenWhereExactArithmeticSeesThem) {
    Random random;
    for (int i = 0; i < 500; i++) {
        Camera camera = random.MakeCamera();
        camera.isParallel = i % 2 == 0;
        ExpectFrame(camera);
        const double width = random.Between(200.0, 3000.0);
        const double height = random.Between(200.0, 3000.0);
        const SpaceMap map(camera, width, height);
        const ThreeVector place = camera.target + random.Within(2.0 * camera.distance);
        const ThreeVector seen = map.See(place);
        // The same in long double, with a third axis of its own.
        using Real = long double;
        const auto dot = [](const ThreeVector& a, const ThreeVector& b) {
            return Real{a.x} * b.x + Real{a.y} * b.y + Real{a.z} * b.z;
        };
        const ThreeVector& r = camera.right;
        const ThreeVector& u = camera.up;
        const ThreeVector way = place - camera.target;
        const Real toEye = (Real{r.y} * u.z - Real{r.z} * u.y) * way.x +
                           (Real{r.z} * u.x - Real{r.x} * u.z) * way.y +
                           (Real{r.x} * u.y - Real{r.y} * u.x) * way.z;
        const Real depth = camera.isParallel ? Real{camera.distance} : camera.distance - toEye;
        const bool isSeen = camera.isParallel || depth > 1e-4L * camera.distance;
        ASSERT_EQ(map.IsBeforeEye(seen), isSeen);
        if (!isSeen) continue;
        const Real scale = Real{Camera::kFocus} * std::min(width, height) / depth;
        const SpaceMap::Point point = map.Project(seen);
        const Real x = width / 2 + scale * dot(way, r);
        const Real y = height / 2 - scale * dot(way, u);
        EXPECT_NEAR(point.x, static_cast<double>(x), 1e-9 * (1.0 + std::abs(point.x)));
        EXPECT_NEAR(point.y, static_cast<double>(y), 1e-9 * (1.0 + std::abs(point.y)));
    }
}

TEST(CameraTest, AxesLieAsInProjections) {
    Camera camera;
    camera.LookFrom(0.0, 0.0);  // along x: y to the right, z upwards
    EXPECT_NEAR(camera.right.y, 1.0, 1e-15);
    EXPECT_NEAR(camera.up.z, 1.0, 1e-15);
    camera.LookFrom(-kPi / 2, 0.0);  // along y: x to the right, z upwards
    EXPECT_NEAR(camera.right.x, 1.0, 1e-15);
    EXPECT_NEAR(camera.up.z, 1.0, 1e-15);
    camera.LookFrom(-kPi / 2, kPi / 2);  // along z: x to the right, y upwards
    EXPECT_NEAR(camera.right.x, 1.0, 1e-15);
    EXPECT_NEAR(camera.up.y, 1.0, 1e-15);
    EXPECT_NEAR(camera.Azimuth(), -kPi / 2, 1e-12);
    EXPECT_NEAR(camera.Elevation(), kPi / 2, 1e-7);
}

TEST(CameraTest, TurningMovesWhatIsNearWithTheHand) {
    Camera camera;
    camera.LookFrom(0.3, 0.2);
    const ThreeVector near = camera.target + 1e10 * camera.Back();
    camera.Roll(0.1, 0.0);
    EXPECT_GT(Dot(near, camera.right), 0.0);
    EXPECT_NEAR(Dot(near, camera.up), 0.0, 1e-3);
    camera.LookFrom(0.3, 0.2);
    camera.Roll(0.0, 0.1);
    EXPECT_LT(Dot(near, camera.up), 0.0);
    // Level turns stop above and below, and keep the horizon.
    for (const double down : {0.4, 9.0, -0.7, -9.0, 0.5}) {
        camera.TurnLevel(1.3, down);
        ExpectFrame(camera);
        EXPECT_NEAR(camera.right.z, 0.0, 1e-14);
        EXPECT_GE(camera.up.z, -1e-14);
    }
    // A long way keeps the frame.
    for (int i = 0; i < 20'000; i++)
        camera.Roll(0.01 * (i % 7), 0.013 * (i % 5));
    ExpectFrame(camera);
}

TEST(CameraTest, ZoomingKeepsWhatIsUnderThePointer) {
    Random random;
    for (int i = 0; i < 100; i++) {
        Camera camera = random.MakeCamera();
        camera.isParallel = true;
        const double right = random.Between(-0.4, 0.4);
        const double down = random.Between(-0.4, 0.4);
        const ThreeVector under =
            camera.target + camera.distance * (right * camera.right - down * camera.up);
        camera.ZoomAbout(right, down, random.Between(0.2, 5.0));
        const SpaceMap map(camera, 1000.0, 1000.0);
        const SpaceMap::Point point = map.Project(map.See(under));
        EXPECT_NEAR(point.x, 500.0 + right * map.Focus(), 1e-6);
        EXPECT_NEAR(point.y, 500.0 + down * map.Focus(), 1e-6);
    }
    Camera camera;
    for (const double factor : {1e300, 1e-300, 0.0, -1.0, kNaN, kInfinity}) {
        camera.ZoomAbout(0.1, 0.1, factor);
        ExpectFrame(camera);
    }
}

TEST(CameraTest, FitShowsAllPlacesAndNoMoreThanIsNeeded) {
    Random random;
    for (int i = 0; i < 50; i++) {
        Camera camera = random.MakeCamera();
        camera.isParallel = i % 2 == 0;
        std::vector<ThreeVector> places;
        for (int j = 0; j < 30; j++)
            places.push_back(random.Within(4e11));
        places.push_back({kNaN, 0.0, 0.0});
        places.push_back({kInfinity, 0.0, 0.0});
        constexpr double kWidth = 800.0, kHeight = 500.0;
        const SpaceMap before(camera, kWidth, kHeight);
        camera.Fit(places, kWidth / before.Focus(), kHeight / before.Focus());
        const SpaceMap map(camera, kWidth, kHeight);
        double farthest = 0.0;
        for (int j = 0; j < 30; j++) {
            const ThreeVector seen = map.See(places[static_cast<std::size_t>(j)]);
            ASSERT_TRUE(map.IsBeforeEye(seen));
            const SpaceMap::Point point = map.Project(seen);
            farthest = std::max(
                {farthest, std::abs(point.x / kWidth - 0.5), std::abs(point.y / kHeight - 0.5)});
        }
        EXPECT_NEAR(farthest, 0.42, 1e-9);
    }
}

TEST(CameraTest, WhatAFileMayHoldBecomesACamera) {
    for (const double wild : {0.0, -1.0, kNaN, kInfinity, -kInfinity, 1e300, -1e300, 1e-320}) {
        for (int i = 0; i < 4; i++) {
            Camera camera;
            if (i == 0) camera.target = {wild, wild, 1.0};
            if (i == 1) camera.right = {wild, wild, wild};
            if (i == 2) camera.up = {wild, 0.0, 0.0};
            if (i == 3) camera.distance = wild;
            camera.Normalize();
            ExpectFrame(camera);
        }
    }
    // What is only a little off is put right; what lies along the same line is none.
    Camera camera;
    camera.right = {2.0, 0.0, 0.0};
    camera.up = {0.5, 3.0, 0.0};
    camera.Normalize();
    EXPECT_EQ(camera.right, (ThreeVector{1.0, 0.0, 0.0}));
    EXPECT_NEAR(camera.up.y, 1.0, 1e-15);
    camera.up = {-7.0, 0.0, 0.0};
    camera.Normalize();
    ExpectFrame(camera);
}
