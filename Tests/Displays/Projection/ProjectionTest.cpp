#include "Displays/Projection/Projection.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Displays/Base/WindowPlacement.h"
#include "Platform/Interface/Canvas/LineClip.h"

TEST(Projection, DropsOneAxis) {
    Projection projection;
    projection.scale = 2.0;
    const BPoint middle{100.0f, 50.0f};
    EXPECT_EQ(projection.Map(middle, 1, 2, 4), (BPoint{102.0f, 46.0f}));
    projection.axis = Projection::kX;
    EXPECT_EQ(projection.Map(middle, 1, 2, 4), (BPoint{104.0f, 42.0f}));
    projection.axis = Projection::kY;
    EXPECT_EQ(projection.Map(middle, 1, 2, 4), (BPoint{102.0f, 42.0f}));
    projection.axis = 7;  // as a document may have it
    EXPECT_EQ(projection.Map(middle, 1, 2, 4), (BPoint{102.0f, 46.0f}));

    const Projection usual;
    EXPECT_NEAR(usual.Map({}, 1.4959787066e11, 0, 0).x, 149.6f, 0.01f);
    EXPECT_TRUE(std::isfinite(usual.Map({}, 1e300, -1e300, 0).x));
}

TEST(Projection, LooksOntoAnyPlane) {
    Projection projection;
    projection.scale = 2.0;
    projection.axis = Projection::kX;
    // A plane that is tilted about x: what lies along its normal is seen in one point.
    const ThreeVector normal{0.0, -0.6, 0.8};
    projection.plane = PlaneAcross(5.0 * normal);
    EXPECT_EQ(projection.plane.right, (ThreeVector{1.0, 0.0, 0.0}));
    EXPECT_NEAR(Length(projection.plane.up - ThreeVector{0.0, 0.8, 0.6}), 0.0, 1e-15);
    const BPoint seen = projection.Map({}, 3.0, 8.0, 6.0);
    EXPECT_NEAR(seen.x, 6.0, 1e-5);
    EXPECT_NEAR(seen.y, -20.0, 1e-5);
    const BPoint behind = projection.Map({}, 3.0, 8.0 + 0.6, 6.0 - 0.8);
    EXPECT_NEAR(behind.x, seen.x, 1e-5);
    EXPECT_NEAR(behind.y, seen.y, 1e-5);
    projection.Shift(6.0, -20.0);
    EXPECT_NEAR(projection.Map({}, 3.0, 8.0, 6.0).x, 0.0, 1e-5);
    EXPECT_NEAR(projection.Map({}, 3.0, 8.0, 6.0).y, 0.0, 1e-5);
    EXPECT_NEAR(Length(projection.center - ThreeVector{3.0, 8.0, 6.0}), 0.0, 1e-12);
    const PlaneMap::Point mapped = projection.Plane().Map({4.0, 8.0, 6.0});
    EXPECT_NEAR(mapped.x, 2.0, 1e-12);
    // Where x is the normal another axis lies to the right; and what a file may hold is none.
    EXPECT_EQ(PlaneAcross({-2.0, 0.0, 0.0}).right, (ThreeVector{0.0, 1.0, 0.0}));
    EXPECT_FALSE(PlaneAcross({}).IsOn());
    for (ViewPlane plane :
         {ViewPlane{{1.0, 0.0, 0.0}, {2.0, 0.0, 0.0}}, ViewPlane{{1.0, 0.0, 0.0}, {}},
          ViewPlane{{}, {1.0, 0.0, 0.0}}, ViewPlane{{HUGE_VAL, 0.0, 0.0}, {0.0, 1.0, 0.0}}}) {
        plane.Normalize();
        EXPECT_FALSE(plane.IsOn());
    }
}

TEST(Projection, DiscsGrowWithTheLogarithm) {
    EXPECT_EQ(diameter_log(1423155.0), 0.0);
    EXPECT_EQ(diameter_log(0.0), 0.0);
    EXPECT_NEAR(diameter_log(1423155.0 * std::exp(5.0)), 5.0, 1e-12);
    Projection projection;
    EXPECT_NEAR(projection.DiscSize(1423155.0 * std::exp(5.0)), 2.5f, 1e-6f);
    EXPECT_EQ(projection.DiscSize(1e10), 10.0f);
    projection.scale = 1e-3;
    EXPECT_EQ(projection.DiscSize(6378137.0), 6378.137f);
}

TEST(Projection, WhatIsUnderThePointerStaysThere) {
    for (const int32 axis : {Projection::kX, Projection::kY, Projection::kZ}) {
        Projection projection;
        projection.axis = axis;
        projection.center = {3e10, -2e10, 5e10};
        const BPoint before = projection.Map({}, 1e11, 2e11, -3e11);
        projection.ZoomAbout(before, 7.5);
        EXPECT_DOUBLE_EQ(projection.scale, 7.5e-9);
        const BPoint after = projection.Map({}, 1e11, 2e11, -3e11);
        EXPECT_NEAR(after.x, before.x, 1e-3f);
        EXPECT_NEAR(after.y, before.y, 1e-3f);
    }
    Projection projection;
    projection.ZoomAbout({10.0f, 10.0f}, 0.0);
    EXPECT_EQ(projection.scale, 1e-9);
}

TEST(Projection, FitsAllPlaces) {
    Projection projection;
    const std::vector<ThreeVector> places{{-1e9, 5e9, 1e20}, {3e9, 5.5e9, -1e20}, {0, 5e9, 0}};
    projection.Fit(places, 400, 300);
    for (const ThreeVector& place : places) {
        const BPoint point = projection.Map({}, place.x, place.y, place.z);
        EXPECT_LT(std::abs(point.x), 200.0f);
        EXPECT_LT(std::abs(point.y), 150.0f);
    }
    EXPECT_NEAR(projection.scale, 400 * 0.84 / 4e9, 1e-12);

    Projection alone;
    alone.Fit({{7.0, 8.0, 9.0}}, 400, 300);
    EXPECT_EQ(alone.scale, 1e-9);
    EXPECT_EQ(alone.center.x, 7.0);
    alone.Fit({{NAN, 0.0, 0.0}}, 400, 300);
    EXPECT_EQ(alone.center.x, 7.0);
}

TEST(LineClipping, CutsAlongTheLine) {
    const BRect frame{0.0f, 0.0f, 100.0f, 50.0f};
    const auto clip = [&frame](BPoint start, BPoint end) {
        const bool isSeen = FixStartEnd(&start, &end, frame);
        return isSeen ? std::vector<BPoint>{start, end} : std::vector<BPoint>{};
    };
    EXPECT_EQ(clip({10, 10}, {90, 40}), (std::vector<BPoint>{{10, 10}, {90, 40}}));
    EXPECT_EQ(clip({-100, 25}, {200, 25}), (std::vector<BPoint>{{0, 25}, {100, 25}}));
    EXPECT_EQ(clip({-50, 0}, {50, 50}), (std::vector<BPoint>{{0, 25}, {50, 50}}));
    EXPECT_EQ(clip({50, -1e9f}, {50, 1e9f}), (std::vector<BPoint>{{50, 0}, {50, 50}}));
    // Both ends outside on different sides, without meeting it.
    EXPECT_TRUE(clip({-60, 25}, {50, 120}).empty());
    EXPECT_TRUE(clip({-5, -5}, {-5, 60}).empty());
    EXPECT_TRUE(clip({10, 10}, {NAN, 10}).empty());
}

TEST(WindowPlacement, SavedFramesComeBackOntoTheScreen) {
    const BRect screen{0, 0, 1023, 767};
    const BRect good{100, 100, 500, 400};
    EXPECT_EQ(ConfinedFrame(good, screen, 200, 100), good);
    // Off to the right and below: 200 by 100 pixels stay, the rest is cut.
    EXPECT_EQ(ConfinedFrame({2000, 2000, 2400, 2300}, screen, 200, 100),
              (BRect{818, 662, 1018, 762}));
    EXPECT_EQ(ConfinedFrame({-300, -200, 0, 0}, screen, 200, 100), (BRect{5, 24, 305, 224}));
    // All of it, or what is most of use: its title and its left-top corner.
    EXPECT_EQ(FrameOnScreen({900, 700, 1200, 900}, screen), (BRect{718, 562, 1018, 762}));
    EXPECT_EQ(FrameOnScreen({0, 0, 300, 2000}, screen), (BRect{5, 24, 305, 2024}));
    EXPECT_EQ(confine_point_to_frame({1000, 760}, {0, 0, 1000, 500}, 0.9f), (BPoint{900, 450}));
    EXPECT_EQ(confine_point_to_frame({-7, 30}, {0, 0, 1000, 500}, 0.9f), (BPoint{0, 30}));
}
