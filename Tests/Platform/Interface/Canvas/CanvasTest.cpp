#include "Platform/Interface/Canvas/Canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr rgb_color kBlack{0, 0, 0, 255};
constexpr rgb_color kWhite{255, 255, 255, 255};
constexpr rgb_color kRed{255, 0, 0, 255};
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinite = std::numeric_limits<float>::infinity();

void DrawLine(Canvas* canvas, BPoint from, BPoint to, rgb_color color = kWhite) {
    canvas->BeginLineArray(1);
    canvas->AddLine(from, to, color);
    canvas->EndLineArray();
}

// The light of all pixels, in whole white ones.
double Light(const Canvas& canvas) {
    double sum = 0;
    for (int32 y = 0; y < canvas.Pixels().Height(); y++)
        for (int32 x = 0; x < canvas.Pixels().Width(); x++)
            sum += ToColor(canvas.Pixels().Row(y)[x]).green;
    return sum / 255;
}

double LargestDifference(const Canvas& a, const Canvas& b) {
    int32 largest = 0;
    for (int32 y = 0; y < a.Pixels().Height(); y++)
        for (int32 x = 0; x < a.Pixels().Width(); x++)
            largest = std::max(largest, std::abs(ToColor(a.Pixels().Row(y)[x]).green -
                                                 ToColor(b.Pixels().Row(y)[x]).green));
    return largest;
}

TEST(Canvas, LinesCoverWhatTheyShould) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(scale);
        for (double angle = 0; angle < 6.28; angle += 0.1) {
            Canvas canvas({-60, -60, 60, 60}, kBlack, scale);
            const auto x = static_cast<float>(50 * std::cos(angle));
            const auto y = static_cast<float>(50 * std::sin(angle));
            DrawLine(&canvas, {0, 0}, {x, y});
            // A strip one logical pixel wide, with its round ends.
            const double device = scale * scale;
            EXPECT_NEAR(Light(canvas), (50.0 + 0.8) * device, 0.09 * 50 * device + 1.5 * scale);
            EXPECT_GT(canvas.PixelAt({x / 2, y / 2}).green, 110);
            EXPECT_EQ(canvas.PixelAt({x / 2 + y / 20, y / 2 - x / 20}), kBlack);
        }
    }
    Canvas canvas({0, 0, 9, 9}, kBlack);
    DrawLine(&canvas, {2, 5}, {7, 5});
    EXPECT_EQ(canvas.PixelAt({2, 5}), kWhite);
    EXPECT_EQ(canvas.PixelAt({7, 5}), kWhite);
    EXPECT_EQ(canvas.PixelAt({9, 5}), kBlack);
    EXPECT_EQ(canvas.PixelAt({5, 3}), kBlack);
    DrawLine(&canvas, {4, 1}, {4, 1});
    EXPECT_EQ(canvas.PixelAt({4, 1}), kWhite);
}

TEST(Canvas, ManyPiecesLookLikeOneLine) {
    // A slow body: hundreds of pieces to the pixel, drawn again on every orbit.
    Canvas whole({0, 0, 99, 99}, kBlack);
    Canvas pieces({0, 0, 99, 99}, kBlack);
    DrawLine(&whole, {5, 10}, {90, 75});
    for (int round = 0; round < 3; round++) {
        pieces.BeginLineArray(128);
        constexpr int kPieces = 8500;
        const auto at = [](int i) {
            const float part = static_cast<float>(i) / kPieces;
            return BPoint{5 + 85 * part, 10 + 65 * part};
        };
        for (int i = 0; i < kPieces; i++)
            pieces.AddLine(at(i), at(i + 1), kWhite);
        pieces.EndLineArray();
    }
    EXPECT_LT(LargestDifference(whole, pieces), 48);
    // Another colour covers what is there.
    DrawLine(&pieces, {5, 10}, {90, 75}, kRed);
    EXPECT_EQ(pieces.PixelAt({22, 23}), kRed);
}

// Lines of an array may be drawn together; nobody is to see it.
TEST(Canvas, ATrailLooksAsIfDrawnLineByLine) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> length(1.5, 9);
    std::normal_distribution<double> turn(0, 1);
    for (const double scale : {1.0, 2.0}) {
        // From hardly bent to turning about in every point.
        for (const double bend : {0.0, 0.01, 0.05, 0.2, 1.0, 3.0}) {
            SCOPED_TRACE(bend);
            Canvas together({0, 0, 199, 199}, kBlack, scale);
            Canvas single({0, 0, 199, 199}, kBlack, scale);
            BPoint from{100, 100};
            double angle = 3 * turn(random);
            together.BeginLineArray(128);
            for (int i = 0; i < 128; i++) {
                angle += bend * turn(random);
                const double way = length(random);
                const BPoint to{from.x + static_cast<float>(way * std::cos(angle)),
                                from.y + static_cast<float>(way * std::sin(angle))};
                together.AddLine(from, to, kWhite);
                DrawLine(&single, from, to);
                from = to;
            }
            together.EndLineArray();
            EXPECT_LT(LargestDifference(together, single), 72);
            EXPECT_NEAR(Light(together), Light(single), 0.02 * Light(single) + 1.0);
        }
    }
    // Out and straight back; a point that is nowhere in the middle.
    Canvas canvas({0, 0, 99, 19}, kBlack);
    canvas.BeginLineArray(8);
    canvas.AddLine({10, 5}, {90, 5}, kWhite);
    canvas.AddLine({90, 5}, {40, 5}, kWhite);
    float y = 10;
    for (const float nowhere : {kNaN, kInfinite}) {
        canvas.AddLine({10, y}, {20, y}, kWhite);
        canvas.AddLine({20, y}, {nowhere, y}, kWhite);
        canvas.AddLine({nowhere, y}, {30, y}, kWhite);
        canvas.AddLine({30, y}, {40, y}, kWhite);
        y += 5;
    }
    canvas.EndLineArray();
    EXPECT_EQ(canvas.PixelAt({90, 5}), kWhite);
    EXPECT_EQ(canvas.PixelAt({10, 5}), kWhite);
    for (const float row : {10.0f, 15.0f}) {
        EXPECT_EQ(canvas.PixelAt({15, row}), kWhite);
        EXPECT_EQ(canvas.PixelAt({25, row}), kBlack);
        EXPECT_EQ(canvas.PixelAt({35, row}), kWhite);
    }
}

TEST(Canvas, LinesAreClippedAndNonsenseIsLeftOut) {
    Canvas clipped({0, 0, 49, 49}, kBlack);
    DrawLine(&clipped, {-1e6f, -1e6f}, {1e6f, 1e6f});
    for (float i = 0; i < 50; i++)
        EXPECT_GT(clipped.PixelAt({i, i}).green, 200) << i;
    EXPECT_EQ(clipped.PixelAt({10, 14}), kBlack);

    Canvas empty({0, 0, 49, 49}, kBlack);
    DrawLine(&empty, {kNaN, 1}, {20, 20});
    DrawLine(&empty, {1, 1}, {kInfinite, 20});
    DrawLine(&empty, {-30, -3e38f}, {-30, 3e38f});
    DrawLine(&empty, {60, 100}, {80, 3});
    empty.DrawDisc({kNaN, 3}, 5, kWhite);
    empty.DrawDisc({3, 3}, kNaN, kWhite);
    empty.DrawDisc({1e30f, 3}, 8192, kWhite);
    EXPECT_EQ(Light(empty), 0);

    // Random ones of any size stay inside their memory (a sanitizer would tell).
    std::mt19937 random(1);
    std::uniform_real_distribution<float> near(-80, 130);
    for (int i = 0; i < 20000; i++) {
        const float far = i % 100 == 0 ? 1e7f : 1.0f;
        DrawLine(&clipped, {near(random) * far, near(random)}, {near(random), near(random) * far});
        clipped.DrawDisc({near(random), near(random)}, near(random) / 10, kRed);
    }
}

TEST(Canvas, DiscsAreRoundAndCanBeErasedByCopying) {
    for (const double scale : {1.0, 2.0}) {
        for (const float radius : {0.5f, 1.0f, 3.3f, 20.0f}) {
            Canvas canvas({-40, -40, 40, 40}, kBlack, scale);
            canvas.DrawDisc({0.3f, -0.2f}, radius, kWhite);
            const double area = M_PI * radius * radius * scale * scale;
            EXPECT_NEAR(Light(canvas), area, 0.06 * area + 0.35);
            const double before = Light(canvas);
            canvas.DrawDisc({0.3f, -0.2f}, radius, kWhite);  // again: its edge stays soft
            EXPECT_EQ(Light(canvas), before);
            canvas.SetBounds({-60, -50, 70, 40});  // ... also in a picture that has grown
            canvas.DrawDisc({0.3f, -0.2f}, radius, kWhite);
            EXPECT_EQ(Light(canvas), before);
        }
        Canvas lower({0, 0, 99, 99}, kBlack, scale);
        DrawLine(&lower, {0, 50}, {99, 50});
        Canvas upper({0, 0, 99, 99}, kBlack, scale);
        upper.CopyFrom(lower, upper.Bounds());
        upper.DrawDisc({40.4f, 50.7f}, 6.2f, kRed);
        EXPECT_EQ(upper.PixelAt({40, 50}), kRed);
        // The square of whole pixels around the rounded centre.
        upper.CopyFrom(lower, {40 - 8, 51 - 8, 40 + 8, 51 + 8});
        EXPECT_EQ(LargestDifference(upper, lower), 0);
    }
    Canvas huge({0, 0, 99, 99}, kBlack);
    huge.DrawDisc({50, 8192 + 50}, 8192, kWhite);
    EXPECT_EQ(huge.PixelAt({50, 48}), kBlack);
    EXPECT_EQ(huge.PixelAt({50, 52}), kWhite);
    EXPECT_EQ(huge.PixelAt({0, 52}), kWhite);
}

TEST(Canvas, GrowingAndScalingKeepThePicture) {
    Canvas canvas({0, 0, 49, 49}, kBlack);
    canvas.FillRect({10, 20, 19, 29}, kRed);
    canvas.SetBounds({-30, -7, 99, 60});
    EXPECT_EQ(canvas.PixelAt({10, 20}), kRed);
    EXPECT_EQ(canvas.PixelAt({19, 29}), kRed);
    EXPECT_EQ(canvas.PixelAt({20, 29}), kBlack);
    EXPECT_EQ(canvas.PixelAt({-30, -7}), kBlack);
    canvas.SetScale(2);
    EXPECT_EQ(canvas.Pixels().Width(), 260);
    EXPECT_EQ(canvas.PixelAt({11, 21}), kRed);
    EXPECT_EQ(canvas.PixelAt({18, 28}), kRed);
    EXPECT_EQ(canvas.PixelAt({21, 29}), kBlack);
    canvas.SetBounds({0, 0, 12, 60});
    EXPECT_EQ(canvas.PixelAt({11, 25}), kRed);
    EXPECT_EQ(canvas.PixelAt({13, 25}), kBlack);
}

TEST(Canvas, DamageCoversEveryChange) {
    std::mt19937 random(2);
    std::uniform_real_distribution<float> place(-20, 320);
    Canvas drawn({0, 0, 299, 199}, kBlack);
    Canvas copy({0, 0, 299, 199}, kBlack);
    drawn.ClearDamage();
    for (int i = 0; i < 300; i++) {
        DrawLine(&drawn, {place(random), place(random)}, {place(random), place(random)});
        drawn.DrawDisc({place(random), place(random)}, 5, kRed);
        drawn.FillRect({place(random), 7, place(random), 9}, kWhite);
        copy.CopyDamageFrom(drawn);
        drawn.ClearDamage();
        ASSERT_EQ(LargestDifference(drawn, copy), 0) << i;
    }
    // One whose middle lies outside for most of its length.
    DrawLine(&drawn, {0, -0.9f}, {299, 0.5f});
    copy.CopyDamageFrom(drawn);
    drawn.ClearDamage();
    EXPECT_EQ(LargestDifference(drawn, copy), 0);
    EXPECT_TRUE(drawn.Damage().IsEmpty());
    // A slanted line damages a strip, not the rectangle around it.
    DrawLine(&drawn, {0, 0}, {299, 199});
    double area = 0;
    for (const IntRect& rect : drawn.Damage().Rects())
        area += rect.Width() * rect.Height();
    EXPECT_LT(area, 0.5 * 300 * 200);
}

}  // namespace
