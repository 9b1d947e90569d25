// A pause takes effect at once, wherever it finds a step of many bodies, and leaves the results
// alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

#include "Calculation/Series/SeriesIntegrator.h"
#include "Calculation/StopFlags.h"
#include "Platform/Application/BMessage.h"
#include "Tests/Calculation/Series/SeriesFixtures.h"

namespace {

using Outcome = Integrator::Outcome;

constexpr double kNoTime = std::numeric_limits<double>::quiet_NaN();

// A run of so many bodies that a step takes longer than a pause may wait.
class SeriesPauseTest : public testing::Test {
protected:
    SeriesPauseTest() {
        integrator_.SetThreads(1);
        stop_.pauseCount = 0;
    }

    void Begin(const PointSystem& system, double time = 0.0) {
        const auto count = static_cast<int32>(system.size());
        rows_ = integrator_.MakeRoom(count, count);
        for (int32 i = 0; i < count; i++) {
            const auto& [position, velocity, gm] = system[static_cast<std::size_t>(i)];
            const double numbers[] = {position.x, position.y, position.z,
                                      velocity.x, velocity.y, velocity.z};
            for (int axis = 0; axis < 3; axis++) {
                rows_.position[axis][i] = numbers[axis];
                rows_.velocity[axis][i] = numbers[3 + axis];
            }
            rows_.gm[i] = gm;
        }
        integrator_.Begin(At(time));
    }
    [[nodiscard]] Integrator::Start At(double time) const {
        return {.order = 8, .cutoff = 1e-12, .time = time, .bodies = noBodies_};
    }
    [[nodiscard]] PointSystem Now() const {
        PointSystem system;
        for (int32 i = 0; i < rows_.bodies; i++)
            system.push_back({{rows_.position[0][i], rows_.position[1][i], rows_.position[2][i]},
                              {rows_.velocity[0][i], rows_.velocity[1][i], rows_.velocity[2][i]},
                              rows_.gm[i]});
        return system;
    }
    Outcome Advance(double until = kNoTime) { return integrator_.Advance(until, stop_).outcome; }
    // Somebody else asks for a pause some time later.
    Outcome AdvanceAndPause(std::chrono::microseconds after) {
        std::thread other([&] {
            std::this_thread::sleep_for(after);
            stop_.pauseCount = 1;
        });
        const Outcome outcome = Advance();
        other.join();
        stop_.pauseCount = 0;
        return outcome;
    }
    // The least of several measurements.
    template <class Piece>
    static double Seconds(int times, const Piece& piece) {
        using Clock = std::chrono::steady_clock;
        double least = HUGE_VAL;
        for (int i = 0; i < times; i++) {
            const Clock::time_point begin = Clock::now();
            piece();
            least = std::min(least, std::chrono::duration<double>(Clock::now() - begin).count());
        }
        return least;
    }

    const std::vector<Body*> noBodies_;
    SeriesIntegrator integrator_;
    BodyRows rows_;
    StopFlags stop_;
};

}  // namespace

TEST_F(SeriesPauseTest, WaitsForNoStepAndTheNextRunMakesItAgain) {
    const PointSystem cluster = Cluster(2200, 2200);
    Begin(cluster);
    double step = Seconds(1, [&] { ASSERT_EQ(Advance(), Outcome::kReport); });
    const double half = integrator_.Time() / 2;
    step = std::min(step, Seconds(1, [&] { ASSERT_EQ(Advance(), Outcome::kReport); }));
    const PointSystem end = Now();
    const double endTime = integrator_.Time();

    // When the run begins: the start of a run that has made no step is taken up, too.
    stop_.pauseCount = 1;
    EXPECT_LT(Seconds(3,
                      [&] {
                          Begin(cluster);
                          EXPECT_EQ(Advance(), Outcome::kStopped);
                      }),
              step / 20);
    BMessage started;
    ASSERT_EQ(integrator_.Archive(&started), B_OK);
    ASSERT_EQ(integrator_.ResumeRun(started, At(0.0)), B_OK);
    stop_.pauseCount = 0;

    // Within a step, and where a run that stands in the middle of one is taken up.
    while (AdvanceAndPause(std::chrono::microseconds(static_cast<int64>(3e5 * step))) !=
           Outcome::kStopped)
        Begin(cluster);
    ASSERT_EQ(Advance(half), Outcome::kReport);
    const PointSystem inside = Now();
    BMessage before, after;
    ASSERT_EQ(integrator_.Archive(&before), B_OK);
    stop_.pauseCount = 1;
    EXPECT_LT(Seconds(3,
                      [&] {
                          Begin(inside, half);
                          EXPECT_EQ(Advance(), Outcome::kStopped);
                      }),
              step / 20);
    stop_.pauseCount = 0;
    ASSERT_EQ(integrator_.Archive(&after), B_OK);
    EXPECT_EQ(after.RemoveName("SeriesUnchecked"), B_OK);
    EXPECT_TRUE(before == after);

    while (integrator_.Time() < endTime)
        ASSERT_EQ(Advance(), Outcome::kReport);
    EXPECT_EQ(integrator_.Time(), endTime);
    const PointSystem found = Now();
    EXPECT_TRUE(std::ranges::equal(found, end, [](const PointBody& a, const PointBody& b) {
        return a.position == b.position && a.velocity == b.velocity;
    }));
}

// What is kept of each pair takes more than 100 MB, which a run that is given up has not touched.
TEST_F(SeriesPauseTest, ARunOfManyPairsBeginsAtOnce) {
    const PointSystem cluster = Cluster(1400, 1400);
    Begin(cluster);
    const double step = Seconds(1, [&] { ASSERT_EQ(Advance(), Outcome::kReport); });
    EXPECT_LT(Seconds(3, [&] { Begin(cluster); }), step / 10);
}
