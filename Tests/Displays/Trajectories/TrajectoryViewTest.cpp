#include "Displays/Trajectories/TrajectoryView.h"

#include <gtest/gtest.h>

#include "Model/Sharing/ChangeFlags.h"
#include "Tests/Displays/TestSky.h"

namespace {

bool HasTrail(const TestSky& sky, BPoint point) {
    return sky.TrailAt(point).green > 40;  // smoothed: two pixels may share it
}

}  // namespace

TEST(TrajectoryView, DiscsMoveOverTheTrailAndLeaveIt) {
    TestSky sky;
    sky.Add(5, {-50, 0, 0});
    sky.Start();
    sky.Draw({0, 0, 0});
    EXPECT_EQ(sky.SeenAt({0, 0}), TestSky::kDisc);
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({-50, 4})));
    sky.Draw({50, 0, 0});
    EXPECT_EQ(sky.SeenAt({50, 3}), TestSky::kDisc);
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({0, 4})));
    EXPECT_EQ(sky.SeenAt({0, 0}), sky.TrailAt({0, 0}));
    EXPECT_TRUE(HasTrail(sky, {0, 0}));
    EXPECT_FALSE(HasTrail(sky, {50, 4}));
}

TEST(TrajectoryView, DuringARunTrailsGoOnFromTheLastBatchAndNotFromTheModel) {
    TestSky sky;
    Body& body = sky.Add(0, {-50, 0, 0});
    sky.Start();
    sky.Draw({0, 0, 0});
    // The model is where the batch after the next one begins.
    body.SetPosition({40, 80, 0});
    body.SetTrailColor({0, 200, 0, 255});
    sky.view.Redisplay(kTrailChanged, sky.Bodies(), true);
    sky.Draw({50, 0, 0});
    EXPECT_TRUE(HasTrail(sky, {25, 0}));
    EXPECT_EQ(sky.TrailAt({25, 0}).green, 200);
    EXPECT_TRUE(sky.IsSky(sky.TrailAt({45, 40})));
    // At rest the model tells.
    sky.view.Redisplay(kTrailChanged, sky.Bodies(), false);
    EXPECT_EQ(sky.view.Cache().DiscAt(0).center, (BPoint{40, -80}));
}

TEST(TrajectoryView, APointWithARingOfSkyMarksASmallDisc) {
    TestSky sky;
    Body& small = sky.Add(0.4, {-50, 0, 0});
    small.SetDiscColor(TestSky::kTrail);
    sky.Add(2, {0, 50, 0});
    sky.Start();
    sky.view.SetMarked(true);
    sky.Draw({20, 0, 0, 0, 50, 0, 20, 0, 0, 0, 50, 0});
    const auto isMark = [&](BPoint at) {
        const rgb_color seen = sky.SeenAt(at);
        return seen.red > 100 && seen.green == 255 && seen.blue > 100;
    };
    for (const BPoint at : {BPoint{19, 0}, BPoint{20, 0}, BPoint{21, 0}, BPoint{20, 1}})
        EXPECT_TRUE(isMark(at));
    // Its trail ends before it, in the same colour.
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({18, 0}))) << int{sky.SeenAt({18, 0}).green};
    EXPECT_EQ(sky.SeenAt({16, 0}), sky.TrailAt({16, 0}));
    EXPECT_TRUE(HasTrail(sky, {16, 0}));
    // A larger disc is as it was.
    EXPECT_EQ(sky.SeenAt({0, -50}), TestSky::kDisc);
    // The mark leaves nothing behind.
    sky.Draw({60, 0, 0, 0, 50, 0});
    for (float x = 10; x < 30; x++)
        for (float y = -5; y <= 5; y++)
            EXPECT_EQ(sky.SeenAt({x, y}), sky.TrailAt({x, y}));
    sky.view.SetMarked(false);
    EXPECT_FALSE(isMark({60, 0}));
}

TEST(TrajectoryView, ADiscThatMovesLessThanAPixelIsOnlyDrawnAgain) {
    TestSky sky;
    sky.Add(5).SetTrailOn(false);
    sky.Start();
    sky.Draw({0.2, 0, 0});
    const BPoint mark{0, 9};
    // Stands for what an erasure would copy over: within the disc's square, outside the disc.
    const BPoint corner{5, 5};
    sky.view.UpperLayer().FillRect({5, 5, 5, 5}, {0, 0, 255, 255});
    sky.Draw({0.4, 0, 0});
    EXPECT_EQ(sky.SeenAt(corner), (rgb_color{0, 0, 255, 255}));
    sky.Draw({0.6, 0, 0});  // rounded, a pixel away from where it was
    EXPECT_TRUE(sky.IsSky(sky.SeenAt(corner)));
    EXPECT_TRUE(sky.IsSky(sky.SeenAt(mark)));
}

TEST(TrajectoryView, SwitchesOfTrailAndDisc) {
    TestSky sky;
    Body& body = sky.Add(5, {-50, 0, 0});
    body.SetTrailOn(false);
    sky.Start();
    sky.Draw({0, 0, 0});
    EXPECT_TRUE(sky.IsSky(sky.TrailAt({-25, 0})));
    EXPECT_EQ(sky.SeenAt({0, 0}), TestSky::kDisc);

    body.SetPosition({0, 0, 0});
    body.SetTrailOn(true);
    body.SetDiscOn(false);
    sky.view.Redisplay(kTrailChanged | kDiscChanged, sky.Bodies());
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({0, 3})));
    // Without a disc its place is restored on every batch, moved or not.
    sky.view.UpperLayer().FillRect({1, 3, 1, 3}, {0, 0, 255, 255});
    sky.Draw({0, 0, 0});
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({1, 3})));
}

TEST(TrajectoryView, DiscsBeyondThePictureAndEnormousOnes) {
    TestSky sky;
    sky.Add(5, {95, 0, 0});
    sky.Start();
    sky.Draw({96, 0, 0});
    EXPECT_EQ(sky.SeenAt({96, 4}), TestSky::kDisc);
    // Its centre has left, but not all of it.
    sky.Draw({103, 0, 0});
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({96, 4})));
    EXPECT_EQ(sky.SeenAt({99, 2}), TestSky::kDisc);
    sky.Draw({110, 0, 0});
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({99, 2})));

    TestSky large;
    large.Add(1e12);
    large.Start();
    large.Draw({0, 0, 0});
    EXPECT_EQ(large.SeenAt({100, 100}), TestSky::kDisc);

    // One that fills the picture from far outside, and goes to the other side.
    TestSky near;
    near.Add(3000, {3050, 0, 0});
    near.Start();
    near.Draw({3040, 0, 0});
    EXPECT_EQ(near.SeenAt({90, 50}), TestSky::kDisc);
    near.Draw({-3050, 0, 0});
    EXPECT_TRUE(near.IsSky(near.SeenAt({90, 50})));
    EXPECT_EQ(near.SeenAt({-90, 50}), TestSky::kDisc);
}

// What has left the margin around the picture and comes back elsewhere takes no short cut.
TEST(TrajectoryView, TrailsThatLeaveThePictureKeepTheirDirection) {
    TestSky sky;
    sky.Add(0, {0, 50, 0});
    sky.Start();
    sky.Draw({-3000, 50, 0, -3000, -50, 0, 0, -50, 0});
    for (float x = -100; x < 0; x += 5) {
        EXPECT_TRUE(HasTrail(sky, {x, -50})) << x;
        EXPECT_TRUE(HasTrail(sky, {x, 50})) << x;
        EXPECT_TRUE(sky.IsSky(sky.TrailAt({x, 0}))) << x;
    }
}

TEST(TrajectoryView, ErasingResizingAndChangesOfTheModel) {
    TestSky sky;
    sky.Add(5, {-50, 0, 0});
    sky.Start();
    sky.Draw({50, 0, 0});
    sky.view.ResizeTo(400, 300);
    EXPECT_TRUE(HasTrail(sky, {0, 0}));
    EXPECT_EQ(sky.view.Cache().DiscAt(0).center, (BPoint{50, 0}));

    sky.view.ClearLow();
    sky.view.DrawDiscs();
    EXPECT_FALSE(HasTrail(sky, {0, 0}));
    EXPECT_EQ(sky.SeenAt({50, 0}), TestSky::kDisc);

    // A body more, and the other one moved by hand: no line leads there.
    sky.Bodies()[0]->SetPosition({0, 60, 0});
    sky.Add(5, {0, -60, 0});
    sky.view.Redisplay(kSystemAdded | kPositionChanged, sky.Bodies());
    EXPECT_TRUE(sky.IsSky(sky.SeenAt({50, 0})));
    EXPECT_EQ(sky.SeenAt({0, -60}), TestSky::kDisc);
    EXPECT_EQ(sky.SeenAt({0, 60}), TestSky::kDisc);
    sky.Draw({10, 60, 0, 10, -60, 0});
    EXPECT_TRUE(HasTrail(sky, {5, 60}));
    EXPECT_TRUE(sky.IsSky(sky.TrailAt({25, -30})));
}

// The calculator tells that it has parked before its last batch is drawn.
TEST(TrajectoryView, ABatchThatWaitsIsDrawnBeforeTheModelTakesOver) {
    TestSky sky;
    sky.Add(0, {-50, 0, 0});
    sky.Start();
    sky.view.ReadPositions(2, std::vector<double>{0, 0, 0, 0, 50, 0}.data());
    sky.Bodies()[0]->SetPosition({0, 50, 0});
    sky.view.Redisplay(kCalculatorParked, sky.Bodies());
    EXPECT_TRUE(HasTrail(sky, {-25, 0}));
    EXPECT_TRUE(HasTrail(sky, {0, -25}));
    sky.view.DisplayData();
    EXPECT_TRUE(sky.IsSky(sky.TrailAt({-25, -25})));
}
