// Runs at a pace: their pictures are even, a pause waits for none, and the results are the same.
#include <gtest/gtest.h>

#include <cmath>
#include <condition_variable>
#include <mutex>

#include "Calculation/PaceClock.h"
#include "Model/Sharing/Pace.h"
#include "Tests/Calculation/TaylorFixtures.h"

namespace {

constexpr bigtime_t kInterval = 1'000'000 / PictureTimes::kMaxPictures;

// Time passes when somebody waits for it, and as much as a test says.
class SteppedClock final : public PaceClock {
public:
    [[nodiscard]] bigtime_t Now() const override { return now_; }
    void WaitUntil(bigtime_t moment, const std::function<bool()>& isOver) override {
        if (!isOver()) now_ = std::max(now_.load(), moment);
    }
    void Wake() override {}
    void Pass(bigtime_t time) { now_ += time; }

private:
    std::atomic<bigtime_t> now_{1000};
};

// No moment ever comes.
class StandingClock final : public PaceClock {
public:
    [[nodiscard]] bigtime_t Now() const override { return 0; }
    void WaitUntil(bigtime_t, const std::function<bool()>& isOver) override {
        std::unique_lock lock(mutex_);
        isWaiting_ = true;
        changed_.notify_all();
        changed_.wait(lock, isOver);
        isWaiting_ = false;
    }
    void Wake() override {
        const std::lock_guard lock(mutex_);
        changed_.notify_all();
    }
    void AwaitWaiter() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return isWaiting_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isWaiting_ = false;
};

// A display: notes what each picture shows, and when.
class Screen final : public RecordingConsumer {
public:
    struct Picture {
        bigtime_t moment;
        double time;
        ThreeVector second;  // the second body
    };

    Screen(TestSystem* system, const Calculator& calculator, SteppedClock* clock = nullptr,
           bigtime_t drawTime = 0)
        : RecordingConsumer(system, calculator),
          calculator_(calculator),
          clock_(clock),
          drawTime_(drawTime) {}

    [[nodiscard]] bool TakesPictures() const override { return true; }
    void ReadData(int32 count, double* times, double* positions, double* velocities) override {
        RecordingConsumer::ReadData(count, times, positions, velocities);
        if (calculator_.BatchesPerUpdate() != 1 || count == 0) return;
        const double* const r =
            positions + std::ptrdiff_t{3} * calculator_.CountBodies() * (count - 1) + 3;
        pictures.push_back(
            {clock_ != nullptr ? clock_->Now() : 0, times[count - 1], {r[0], r[1], r[2]}});
        if (clock_ != nullptr) clock_->Pass(drawTime_);
    }

    std::vector<Picture> pictures;

private:
    const Calculator& calculator_;
    SteppedClock* const clock_;
    const bigtime_t drawTime_;
};

constexpr double kRadius = 1e10;
constexpr double kGm = 1e20;
const double kSpeed = std::sqrt(kGm / kRadius);

// Its second body goes around the origin on a circle, once in 628,318 s.
class Circle : public TestSystem {
public:
    Circle() {
        Add(0, kGm, {}, {});
        Add(1, 0.0, {kRadius, 0, 0}, {0, kSpeed, 0});
    }
};

struct Result {
    std::vector<double> times, positions, velocities;
    BMessage state;
    bool operator==(const Result&) const = default;
};

Result RunAt(Pace pace, int32 reports, std::vector<Screen::Picture>* pictures) {
    Circle system;
    const auto calculator = MakeCalculator(&system);
    SteppedClock clock;
    RecordingConsumer keeper(&system, *calculator);
    Screen screen(&system, *calculator, &clock);
    calculator->SetClock(&clock);
    calculator->SetPace(pace);
    system.Run(calculator.get(), reports);
    *pictures = screen.pictures;
    return {keeper.Times(), keeper.Positions(), keeper.Velocities(), ArchiveOf(*calculator)};
}

// From one to the next the same time passes, within 5 %, at the moments of the pace.
void ExpectEven(const std::vector<Screen::Picture>& pictures, double span) {
    for (size_t i = 1; i + 1 < pictures.size(); i++) {
        ASSERT_EQ(pictures[i].moment - pictures[i - 1].moment, kInterval) << i;
        const double passed = pictures[i].time - pictures[i - 1].time;
        ASSERT_NEAR(passed / span, 1.0, 0.05) << i << " of " << pictures.size();
    }
}

double AngleOf(const ThreeVector& r) {
    return std::atan2(r.y, r.x);
}

}  // namespace

TEST(Pace, PicturesAreEvenAndResultsHaveTheSameBitsAtEveryPace) {
    constexpr int32 kReports = 800;
    std::vector<Screen::Picture> pictures;
    const Result free = RunAt(Pace(), kReports, &pictures);
    ASSERT_EQ(free.times.size(), size_t{kReports});
    const double step = free.times.back() / kReports;
    // Reports in a picture: a small part of one up to more than a batch holds.
    for (const double reports : {0.3, 0.9, 7.3, 19.5, 23.0, 150.0}) {
        SCOPED_TRACE(reports);
        const double span = reports * step;
        const Pace pace = Pace::Of(span * PictureTimes::kMaxPictures);
        EXPECT_TRUE(RunAt(pace, kReports, &pictures) == free);
        ASSERT_GT(pictures.size(), static_cast<size_t>(kReports / reports * 0.9));
        ExpectEven(pictures, span);
        EXPECT_EQ(pictures.back().time, free.times.back()) << "the run's end is seen";
        for (const auto& picture : pictures) {
            const double angle = std::remainder(picture.time * kSpeed / kRadius, 2.0 * M_PI);
            ASSERT_NEAR(std::remainder(AngleOf(picture.second) - angle, 2.0 * M_PI), 0.0, 1e-4);
        }
    }
}

// Four seconds for a revolution, to two digits.
TEST(Pace, OfAutoShowsTheShortestOrbitInFourSeconds) {
    std::vector<Screen::Picture> pictures;
    RunAt(Pace::Auto(), 1000, &pictures);
    ASSERT_GT(pictures.size(), 2u);
    ExpectEven(pictures, 160'000.0 / PictureTimes::kMaxPictures);
}

TEST(Pace, APauseWaitsForNoPictureAndLeavesTheLastReportOnTheScreen) {
    for (const double secondsPerSecond : {1.0, 1e8}) {
        Circle system;
        const auto calculator = MakeCalculator(&system);
        StandingClock clock;
        RecordingConsumer keeper(&system, *calculator);
        Screen screen(&system, *calculator);
        calculator->SetClock(&clock);
        calculator->SetPace(Pace::Of(secondsPerSecond));
        calculator->UnPause();
        clock.AwaitWaiter();
        calculator->Pause();
        ASSERT_FALSE(keeper.Times().empty());
        EXPECT_EQ(keeper.Times().back(), calculator->TBase());
        EXPECT_EQ(screen.Times().back(), calculator->TBase());
        // No picture is kept by those who keep reports.
        EXPECT_TRUE(std::is_sorted(keeper.Times().begin(), keeper.Times().end()));
        EXPECT_TRUE(secondsPerSecond > 1.0 || keeper.Times().size() < 5);
    }
}

// Each picture takes three times as long as there is for it: they come as fast as they are drawn,
// show as much time as ever, and it is told.
TEST(Pace, AMachineThatCannotFollowShowsSlowMotion) {
    for (const int32 late : {0, 3}) {
        Circle system;
        const auto calculator = MakeCalculator(&system);
        SteppedClock clock;
        Screen screen(&system, *calculator, &clock, late * kInterval);
        calculator->SetClock(&clock);
        calculator->SetPace(Pace::Of(600'000.0));
        calculator->SetRunLimit(0, 2e6);
        system.RunUntilParked(calculator.get());
        ASSERT_GT(screen.pictures.size(), 100u);
        for (size_t i = 5; i + 1 < screen.pictures.size(); i++) {
            EXPECT_EQ(screen.pictures[i].moment - screen.pictures[i - 1].moment,
                      std::max(late, 1) * kInterval);
            EXPECT_NEAR(screen.pictures[i].time - screen.pictures[i - 1].time, 1e4, 500.0);
        }
        EXPECT_EQ(calculator->IsBehindPace(), late > 0);
    }
}

// While a picture is drawn the next one is computed, and no more: the machine's slowness shows, and
// a pause leaves nothing to be caught up with.
TEST(Pace, ASlowScreenHasOnePictureToDrawAndNoneBehindIt) {
    class Slow final : public RecordingConsumer {
    public:
        using RecordingConsumer::RecordingConsumer;
        [[nodiscard]] bool TakesPictures() const override { return true; }
        void ReadData(int32 count, double* times, double* positions, double* velocities) override {
            undrawn = std::max(undrawn, CountRead() - CountDrawn());
            RecordingConsumer::ReadData(count, times, positions, velocities);
            last = times[std::max(count - 1, 0)];
            ahead = std::max(ahead, last - shown);
            shown = last;
        }
        int32 undrawn = 0;
        double last = 0.0, shown = 0.0, ahead = 0.0;  // s
    };
    constexpr double kPace = 600'000.0;
    Circle system;
    const auto calculator = MakeCalculator(&system);
    SystemPaceClock clock;
    calculator->SetClock(&clock);
    Slow screen(&system, *calculator, 2 * kInterval);
    calculator->SetPace(Pace::Of(kPace));
    calculator->SetRunLimit(0, 4e5);
    system.RunUntilParked(calculator.get());
    EXPECT_GE(screen.CountRead(), 20);
    EXPECT_EQ(screen.undrawn, 0) << "handed over before the one before was drawn";
    EXPECT_LE(screen.ahead, 1.05 * kPace * static_cast<double>(kInterval) / 1e6);
}
