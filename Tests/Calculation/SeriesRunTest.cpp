// Runs of order 5 and higher: they end at the very time that was asked for, and go on from there to
// the bits of a run that never stopped.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Tests/Calculation/TaylorFixtures.h"

namespace {

constexpr int32 kOrder = 16;
constexpr double kCutoff = 1e-14;

struct Reports {
    std::vector<double> times, positions, velocities;
    bool operator==(const Reports&) const = default;

    // Without those at other times than `of` has.
    [[nodiscard]] Reports At(const std::vector<double>& of) const {
        Reports kept;
        const std::size_t stride = positions.size() / times.size();
        for (std::size_t i = 0; i < times.size(); i++) {
            if (!std::binary_search(of.begin(), of.end(), times[i])) continue;
            kept.times.push_back(times[i]);
            for (std::size_t k = i * stride; k < (i + 1) * stride; k++) {
                kept.positions.push_back(positions[k]);
                kept.velocities.push_back(velocities[k]);
            }
        }
        return kept;
    }
};

Reports Of(const RecordingConsumer& consumer) {
    return {consumer.Times(), consumer.Positions(), consumer.Velocities()};
}

void RunUntil(TestSystem* system, Calculator* calculator, double time, bool isHeld = false) {
    calculator->SetRunLimit(0, time);
    system->RunUntilParked(calculator, isHeld);
}

}  // namespace

TEST(SeriesRun, EndsWhereItIsAskedToAndGoesOnToTheSameBits) {
    for (const PairWalk& planets : {Planets(5, 3), Planets(60, 50)}) {
        TestSystem whole(planets, kOrder, kCutoff);
        const auto reference = MakeCalculator(&whole);
        RecordingConsumer wholeConsumer(&whole, *reference);
        whole.Run(reference.get(), 12);
        const Reports expected = Of(wholeConsumer);
        ASSERT_GT(expected.times.size(), 12u);
        const double end = expected.times.back();
        // Held, paused, or saved and read by somebody else.
        for (const int way : {0, 1, 2}) {
            SCOPED_TRACE(way);
            TestSystem system(planets, kOrder, kCutoff);
            auto calculator = MakeCalculator(&system);
            Reports found;
            for (const double share : {0.03, 0.31, 0.32, 0.77, 1.0}) {
                if (way == 2) {
                    BMessage saved = ArchiveOf(*calculator);
                    calculator = MakeCalculator(&system);
                    calculator->Regenerate(&saved);
                }
                {
                    RecordingConsumer consumer(&system, *calculator);
                    RunUntil(&system, calculator.get(), share * end, way == 0 && share > 0.1);
                    const Reports part = Of(consumer);
                    ASSERT_FALSE(part.times.empty());
                    EXPECT_EQ(part.times.back(), share * end);
                    found.times.insert(found.times.end(), part.times.begin(), part.times.end());
                    found.positions.insert(found.positions.end(), part.positions.begin(),
                                           part.positions.end());
                    found.velocities.insert(found.velocities.end(), part.velocities.begin(),
                                            part.velocities.end());
                }
                EXPECT_EQ(system.GetEpoch()->Time(), share * end);
            }
            EXPECT_TRUE(found.At(expected.times) == expected);
        }
    }
}

TEST(SeriesRun, StartsAfreshWhereABodyHasBeenMoved) {
    const PairWalk planets = Planets(4, 4);
    TestSystem moved(planets, kOrder, kCutoff);
    const auto calculator = MakeCalculator(&moved);
    moved.Run(calculator.get(), 5);
    BMessage saved = ArchiveOf(*calculator);
    for (Body* const body : {moved.Find(2), moved.Find(3)})
        body->SetPosition(body->Position() * 1.25);
    // As from a document that holds these bodies and no state.
    TestSystem fresh(4, kCutoff);
    fresh.GetEpoch()->SetOrder(kOrder);
    fresh.GetEpoch()->SetTime(moved.GetEpoch()->Time());
    for (int64 id = 0; id < 4; id++) {
        const Body* const body = moved.Find(id);
        fresh.Add(id, body->M(), body->Position(), body->Velocity());
    }
    const auto reference = MakeCalculator(&fresh);
    calculator->Regenerate(&saved);
    moved.Run(calculator.get(), 5);
    fresh.Run(reference.get(), 5);
    EXPECT_EQ(moved.GetEpoch()->Time(), fresh.GetEpoch()->Time());
    for (int64 id = 0; id < 4; id++)
        EXPECT_TRUE(moved.Find(id)->Position() == fresh.Find(id)->Position());
}

// A record that no run can have written is no state.
TEST(SeriesRun, TakesNoNonsenseForItsState) {
    TestSystem system(Planets(3, 3), kOrder, kCutoff), expected(Planets(3, 3), kOrder, kCutoff);
    const auto calculator = MakeCalculator(&system), reference = MakeCalculator(&expected);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> states(36, 1.0);
    for (const std::vector<double>& step :
         {std::vector<double>{0, 0, 3.0, 0, 0}, {0, 0, 0, 0, 0}, {nan, 0, 1, 0, 0}, {0, 0, 1}}) {
        BMessage record;
        record.AddInt32("SeriesOrder", kOrder);
        record.AddDouble("SeriesCutoff", kCutoff);
        record.AddDoubles("SeriesStep", step.data(), static_cast<int32>(step.size()));
        record.AddDoubles("SeriesBegin", states.data(), 36);
        calculator->Regenerate(&record);
        BMessage saved = ArchiveOf(*calculator);
        EXPECT_NE(saved.GetInfo("SeriesStep", nullptr, nullptr), B_OK);
    }
    system.Run(calculator.get(), 3);
    expected.Run(reference.get(), 3);
    EXPECT_TRUE(system.Find(1)->Position() == expected.Find(1)->Position());
}
