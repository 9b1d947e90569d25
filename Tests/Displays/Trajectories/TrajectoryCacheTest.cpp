#include "Displays/Trajectories/TrajectoryCache.h"

#include <gtest/gtest.h>

#include "Tests/Displays/TestSky.h"
#include "Tests/Platform/Allocations.h"

namespace {

class TrajectoryCacheTest : public testing::Test {
protected:
    void Start(int32 capacity, float segment) {
        cache_.ResizeCache(capacity, static_cast<int32>(sky_.Bodies().size()));
        cache_.CacheDrawOptions(sky_.Bodies());
        cache_.CacheInitialPositions(sky_.Bodies());
        cache_.SetSegmentLength(segment);
    }

    void Read(const std::vector<double>& positions) {
        cache_.ReadPositions(static_cast<int32>(positions.size() / (3 * sky_.Bodies().size())),
                             positions.data());
        cache_.MakeTrails();
    }

    std::vector<BPoint> Trail(int32 body) const {
        const TrajectoryCache::Trail trail = cache_.TrailAt(body);
        return {trail.points, trail.points + trail.count};
    }

    TestSky sky_;
    TrajectoryCache cache_{&sky_.map};
};

using Points = std::vector<BPoint>;

}  // namespace

TEST_F(TrajectoryCacheTest, ShortStepsAreMergedAndTheLastPositionEndsTheTrail) {
    sky_.Add(0);
    Start(10, 2.0f);
    // |dx| + |dy|: 1, 2 (a point), 1.5, 3 (a point), 0.5 (the end).
    Read({1, 0, 0, 1, 1, 0, 2.5, 1, 0, 2.5, 2.5, 0, 2.5, 3, 0});
    EXPECT_EQ(Trail(0), (Points{{0, 0}, {1, -1}, {2.5f, -2.5f}, {2.5f, -3}}));
    cache_.SetLastR();
    cache_.SetLastDisp();
    // One report draws one line, however short; the next trail starts where this one ends.
    Read({2.5, 3.001, 0});
    EXPECT_EQ(Trail(0), (Points{{2.5f, -3}, {2.5f, -3.001f}}));
}

// The run goes on, and so do the bodies; what a batch holds besides its end is not seen.
TEST_F(TrajectoryCacheTest, WithoutMemoryEachBatchEndsWhereItShould) {
    sky_.Add(0);
    sky_.Add(0, {50, 0, 0});
    Start(2, 0.0f);
    std::vector<double> samples;
    for (int i = 1; i <= 1000; i++)
        samples.insert(samples.end(), {0.01 * i, 0, 0, 50 + 0.01 * i, 0, 0});
    RefuseAllocationsHereFrom(10'000);
    Read(samples);
    EXPECT_EQ(Trail(0), (Points{{0, 0}, {10, 0}}));
    EXPECT_EQ(Trail(1), (Points{{50, 0}, {60, 0}}));
    cache_.SetLastR();
    EXPECT_EQ(cache_.LastPosition(1).x, 60.0);
    cache_.SetLastDisp();
    // There is none at all when the next run begins: then there is nothing to see.
    RefuseAllocationsHereFrom(1);
    cache_.ResizeCache(100, 500);
    EXPECT_EQ(cache_.CountBodies(), 0);
    cache_.ReadPositions(1000, samples.data());
    cache_.MakeTrails();
    cache_.SetLastR();
    RefuseAllocationsHereFrom(SIZE_MAX);
    Start(2, 0.0f);
    EXPECT_EQ(cache_.CountBodies(), 2);
    Read(samples);
    EXPECT_EQ(Trail(0).size(), 1001u);
}

TEST_F(TrajectoryCacheTest, ABatchMayBeFullOrTooLargeAndEveryStepAPoint) {
    sky_.Add(0);
    sky_.Add(0, {50, 0, 0});
    Start(3, 0.0f);
    Read({1, 0, 0, 51, 0, 0, 2, 0, 0, 52, 0, 0, 3, 0, 0, 53, 0, 0});
    EXPECT_EQ(Trail(0), (Points{{0, 0}, {1, 0}, {2, 0}, {3, 0}}));
    EXPECT_EQ(Trail(1), (Points{{50, 0}, {51, 0}, {52, 0}, {53, 0}}));
    Read({4, 0, 0, 54, 0, 0, 5, 0, 0, 55, 0, 0, 6, 0, 0, 56, 0, 0, 7, 0, 0, 57, 0, 0});
    EXPECT_EQ(cache_.Capacity(), 4);
    EXPECT_EQ(Trail(1).back(), (BPoint{57, 0}));
    EXPECT_EQ(Trail(1).size(), 5U);
}

TEST_F(TrajectoryCacheTest, TrailsMayBeRelativeToABodyOrToTheCentreOfMass) {
    sky_.Add(0).SetM(3.0);
    sky_.Add(0, {8, 0, 0}).SetM(1.0);
    Start(10, 0.0f);
    cache_.SetReference({{1, 1.0}});
    cache_.SetLastDisp();
    EXPECT_EQ(cache_.DiscAt(0).center, (BPoint{-8, 0}));
    Read({1, 1, 0, 12, 3, 0});
    EXPECT_EQ(Trail(0), (Points{{-8, 0}, {-11, 2}}));
    EXPECT_EQ(Trail(1), (Points{{0, 0}, {0, 0}}));
    cache_.SetLastR();

    cache_.SetReference({{0, 3.0}, {1, 1.0}});
    EXPECT_EQ(cache_.LastReference(), (ThreeVector{(3.0 + 12.0) / 4, (3.0 + 3.0) / 4, 0}));
    // A member that is not there does not count.
    cache_.SetReference({{7, 1.0}});
    EXPECT_EQ(cache_.LastReference(), ThreeVector{});
}

TEST_F(TrajectoryCacheTest, DomainsCoverTheDiscAndLieOnWholePixels) {
    sky_.Add(3.2);
    Start(1, 2.0f);
    // side = 2 * round(3.2 + 1.5)
    EXPECT_EQ(cache_.DomainCenteredAt(0, {10.4f, -10.6f}), (BRect{5, -16, 15, -6}));
    EXPECT_EQ(cache_.DomainCenteredAt(0, {10.6f, -10.4f}), (BRect{6, -15, 16, -5}));
}
