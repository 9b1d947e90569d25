#include "TaylorCalculator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "AllocationCounter.h"
#include "BMessage.h"
#include "Body.h"
#include "CollisionLooper.h"
#include "Epoch.h"
#include "ScalarTaylor.h"
#include "TestSystem.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kNever = std::numeric_limits<double>::infinity();

std::unique_ptr<TaylorCalculator> MakeCalculator(TestSystem* system, int32 threads = 1) {
    auto calculator =
        std::make_unique<TaylorCalculator>(system->Portal(), system->Consumers(), nullptr);
    calculator->SetThreads(threads);
    return calculator;
}

// A heavy body with others on roughly circular orbits about it at many distances, and massless ones
// among them.
PairWalk Planets(int32 count, int32 massive) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> unit(-1, 1);
    PairWalk walk;
    walk.massive = massive;
    for (int32 i = 0; i < count; i++) {
        PairWalk::Body body{};
        body.gm = i == 0 ? 1.3e20 : i < massive ? 1e17 / i : 0.0;
        if (i > 0) {
            const double r = 1e11 * (1 + 0.3 * i);
            const double v = std::sqrt(1.3e20 / r);
            const double angle = 10 * unit(random);
            body.position[0] = r * std::cos(angle);
            body.position[1] = r * std::sin(angle);
            body.position[2] = 0.05 * r * unit(random);
            body.velocity[0] = -v * std::sin(angle);
            body.velocity[1] = v * std::cos(angle);
            body.velocity[2] = 0.05 * v * unit(random);
        }
        walk.bodies.push_back(body);
    }
    return walk;
}

void ExpectSameBits(const TestSystem& system, const PairWalk& walk) {
    for (size_t i = 0; i < walk.bodies.size(); i++) {
        const PairWalk::Body& expected = walk.bodies[i];
        const auto& [x, y, z] = expected.position;
        const auto& [vx, vy, vz] = expected.velocity;
        const Body* const body = system.Find(static_cast<int64>(i));
        ASSERT_TRUE(body->Position() == (ThreeVector{x, y, z})) << i;
        ASSERT_TRUE(body->Velocity() == (ThreeVector{vx, vy, vz})) << i;
    }
}

double Length(const ThreeVector& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

BMessage ArchiveOf(const TaylorCalculator& calculator) {
    BMessage archive;
    EXPECT_EQ(calculator.Archive(&archive), B_OK);
    return archive;
}

std::vector<double> Doubles(const BMessage& archive, const char* field) {
    int32 count = 0;
    archive.GetInfo(field, nullptr, &count);
    std::vector<double> numbers(static_cast<size_t>(count));
    EXPECT_EQ(archive.FindDoubles(field, 0, count, numbers.data()), B_OK);
    return numbers;
}

int32 Iteration(const BMessage& archive) {
    int32 iteration = -1;
    archive.FindInt32("Iter", &iteration);
    return iteration;
}

// Relative motion of two bodies after a time from pericentre, by Kepler's equation.
class KeplerOrbit {
public:
    KeplerOrbit(double gm, double axis, double eccentricity)
        : axis_(axis), e_(eccentricity), n_(std::sqrt(gm / (axis * axis * axis))) {}

    double Period() const { return 2 * kPi / n_; }
    ThreeVector Position(double time) const {
        const double anomaly = EccentricAnomaly(time);
        return {axis_ * (std::cos(anomaly) - e_),
                axis_ * std::sqrt(1 - e_ * e_) * std::sin(anomaly), 0};
    }
    ThreeVector Velocity(double time) const {
        const double anomaly = EccentricAnomaly(time);
        const double rate = n_ / (1 - e_ * std::cos(anomaly));
        return {-axis_ * rate * std::sin(anomaly),
                axis_ * rate * std::sqrt(1 - e_ * e_) * std::cos(anomaly), 0};
    }

private:
    double EccentricAnomaly(double time) const {
        const double mean = n_ * time;
        double anomaly = mean;
        for (int i = 0; i < 50; i++)
            anomaly -= (anomaly - e_ * std::sin(anomaly) - mean) / (1 - e_ * std::cos(anomaly));
        return anomaly;
    }

    const double axis_, e_, n_;
};

struct KeplerErrors {
    double position;  // relative, after one period
    double energy;    // relative, the greatest of many during it
    double period;    // relative
};

KeplerErrors IntegrateKepler(double cutoff) {
    constexpr double kGM1 = 1.0e20, kGM2 = 0.3e20, kAxis = 1.5e11, kEccentricity = 0.4;
    const KeplerOrbit orbit(kGM1 + kGM2, kAxis, kEccentricity);
    TestSystem system(4, cutoff);
    const ThreeVector r = orbit.Position(0), v = orbit.Velocity(0);
    const double share1 = kGM2 / (kGM1 + kGM2), share2 = kGM1 / (kGM1 + kGM2);
    Body* const a = system.Add(0, kGM1, -share1 * r, -share1 * v);
    Body* const b = system.Add(1, kGM2, share2 * r, share2 * v);
    const auto calculator = MakeCalculator(&system);

    const double energy = -(kGM1 + kGM2) / (2 * kAxis);
    KeplerErrors errors{};
    ThreeVector d;
    for (int part = 1; part <= 16; part++) {
        calculator->SetRunLimit(0, orbit.Period() * part / 16);
        system.RunUntilParked(calculator.get());
        d = b->Position() - a->Position();
        const double speed = Length(b->Velocity() - a->Velocity());
        const double found = speed * speed / 2 - (kGM1 + kGM2) / Length(d);
        errors.energy = std::max(errors.energy, std::fabs(found / energy - 1));
    }
    const double time = system.GetEpoch()->Time();
    errors.position = Length(d - orbit.Position(time)) / kAxis;
    // How long after the end of the period the bodies are where they were at its beginning.
    const double late = time - d.y / Length(b->Velocity() - a->Velocity());
    errors.period = std::fabs(late / orbit.Period() - 1);
    return errors;
}

}  // namespace

TEST(TaylorCalculator, TwoBodiesFollowKeplerAsWellAsTheCutoffAllows) {
    KeplerErrors former = {1, 1, 1};
    for (double cutoff : {1e-5, 1e-7, 1e-9, 1e-11}) {
        SCOPED_TRACE(cutoff);
        const KeplerErrors errors = IntegrateKepler(cutoff);
        // The velocity's first neglected term is of fourth order in the step, so the error of a
        // whole orbit is of third order: it goes with the cutoff itself.
        EXPECT_LT(errors.position, former.position / 50);
        EXPECT_LT(errors.energy, former.energy / 50);
        EXPECT_LT(errors.period, former.period / 50);
        EXPECT_LT(errors.position, 10 * cutoff);
        EXPECT_LT(errors.energy, 5 * cutoff);
        former = errors;
    }
}

TEST(TaylorCalculator, StepsAreThoseOfTheScalarReference) {
    for (int32 order : {2, 3, 4}) {
        SCOPED_TRACE(order);
        // Coarse, so that parts are promoted often.
        const double cutoff = order == 4 ? 1e-5 : 1e-4;
        const PairWalk planets = Planets(9, 6);
        ScalarTaylor reference(planets, order, cutoff, ScalarTaylor::Forces::kWalk);
        TestSystem system(planets, order, cutoff);
        const auto calculator = MakeCalculator(&system);
        int32 reports = order == 4 ? 1000 : 40;
        system.Run(calculator.get(), reports);
        while (reports-- > 0)
            reference.Step();
        ExpectSameBits(system, reference.System());
        EXPECT_EQ(system.GetEpoch()->Time(), reference.Time());
        EXPECT_GT(reference.CountPromotions(), order == 4 ? 3 : -1);
    }
}

TEST(TaylorCalculator, StoredTensorsGiveTheSameUpToRounding) {
    const PairWalk planets = Planets(9, 6);
    for (int32 order : {3, 4}) {
        SCOPED_TRACE(order);
        ScalarTaylor reference(planets, order, 1e-7, ScalarTaylor::Forces::kTensors);
        TestSystem system(planets, order, 1e-7);
        const auto calculator = MakeCalculator(&system);
        const int32 reports = order == 4 ? 2000 : 20;
        system.Run(calculator.get(), reports);
        for (int32 i = 0; i < reports; i++)
            reference.Step();
        for (size_t i = 0; i < planets.bodies.size(); i++) {
            const auto& [x, y, z] = reference.System().bodies[i].position;
            const ThreeVector position = system.Find(static_cast<int64>(i))->Position();
            EXPECT_LT(Length(position - ThreeVector{x, y, z}), 1e-11 * Length(position)) << i;
        }
    }
}

TEST(TaylorCalculator, AnyOrderIsTakenAsTheNearestThereIs) {
    const PairWalk planets = Planets(4, 4);
    for (const auto& [stored, used] : {std::pair{-7, 2}, {1, 2}, {5, 4}, {100, 4}}) {
        TestSystem system(planets, stored, 1e-6), expected(planets, used, 1e-6);
        system.Run(MakeCalculator(&system).get(), 20);
        expected.Run(MakeCalculator(&expected).get(), 20);
        EXPECT_EQ(system.GetEpoch()->Time(), expected.GetEpoch()->Time());
        EXPECT_TRUE(system.Find(3)->Position() == expected.Find(3)->Position());
    }
}

TEST(TaylorCalculator, ResultsDependNeitherOnBatchesNorOnConsumersNorOnThreads) {
    const PairWalk planets = Planets(60, 60);  // enough for a second thread to be worth it
    constexpr int32 kReports = 3000;
    struct Outcome {
        std::vector<double> times, positions, velocities;
        BMessage state;
        bool operator==(const Outcome&) const = default;
    };
    const auto run = [&](int32 reportsPerDraw, int32 threads, bigtime_t drawTime) {
        TestSystem system(planets, 4, 1e-6);
        const auto calculator = MakeCalculator(&system, threads);
        calculator->AdjustAnimationSpeed(static_cast<float>(0.8 * reportsPerDraw), 1'000'000);
        EXPECT_EQ(calculator->ReportsPerDraw(), reportsPerDraw);
        RecordingConsumer consumer(&system, *calculator, drawTime), other(&system, *calculator, 0);
        system.Run(calculator.get(), kReports);
        EXPECT_EQ(consumer.Times(), other.Times());
        return Outcome{consumer.Times(), consumer.Positions(), consumer.Velocities(),
                       ArchiveOf(*calculator)};
    };
    const Outcome expected = run(100, 1, 0);
    ASSERT_EQ(expected.times.size(), static_cast<size_t>(kReports));
    EXPECT_TRUE(run(10, 1, 0) == expected);
    EXPECT_TRUE(run(2999, 1, 0) == expected);
    EXPECT_TRUE(run(137, 2, 2000) == expected);
}

// The consumer is so slow that the pacing changes the size of the batches during the run.
TEST(TaylorCalculator, PacingDoesNotChangeResults) {
    const PairWalk planets = Planets(3, 3);
    TestSystem paced(planets, 4, 1e-6), plain(planets, 4, 1e-6);
    const auto calculator = MakeCalculator(&paced);
    RecordingConsumer consumer(&paced, *calculator, 1000);
    calculator->SetUpdatesPerSecond(200);
    calculator->UnPause();
    while (calculator->ReportsPerDraw() == 100)
        consumer.WaitForDrawing();
    for (int i = 0; i < 5; i++)
        consumer.WaitForDrawing();
    calculator->Pause();
    EXPECT_GT(calculator->ReportsPerDraw(), 100);

    const auto reference = MakeCalculator(&plain);
    plain.Run(reference.get(), static_cast<int64>(consumer.Times().size()));
    EXPECT_EQ(plain.GetEpoch()->Time(), paced.GetEpoch()->Time());
    EXPECT_EQ(plain.GetEpoch()->Time(), consumer.Times().back());
    EXPECT_TRUE(ArchiveOf(*reference) == ArchiveOf(*calculator));
}

TEST(TaylorCalculator, NothingIsAllocatedFromBatchToBatch) {
    class Counter : public ReportConsumer {
    public:
        bool LockConsumer() override { return true; }
        void UnlockConsumer() override {}
        void PrepareForGo(int32) override {}
        void ReadData(int32, double*, double*, double*) override {
            last = CountAllocations();
            if (++batches == 2) early = last;
        }
        void ReadOk() override { release_ben(writeOk); }

        Benaphore* writeOk = nullptr;
        int32 batches = 0;
        int64 early = 0, last = 0;
    } counter;
    TestSystem system(Planets(30, 20), 4, 1e-6);
    system.consumers.push_back(&counter);
    const auto calculator = MakeCalculator(&system);
    counter.writeOk = calculator->WriteOk();
    counter.ReadOk();
    system.Run(calculator.get(), 2000);
    EXPECT_EQ(counter.batches, 20);
    EXPECT_EQ(counter.last, counter.early);
}

TEST(TaylorCalculator, TheFirstStepAlreadyFitsTheFastestPair) {
    TestSystem system(4, 1e-11);
    system.Add(0, 4e14, {-2e7, 0, 0}, {});
    system.Add(1, 4e14, {2e7, 0, 0}, {});
    const auto calculator = MakeCalculator(&system);
    system.Run(calculator.get(), 1);
    const double h = system.GetEpoch()->Time();
    const double rate = 8e14 / std::pow(4e7, 3), x = std::pow(1e-11, -1.0 / 3);
    const double ratio = 1 / (h * x * std::sqrt(rate));
    EXPECT_GE(ratio, 0.749894209334325);
    EXPECT_LE(ratio, 1.33352143216);
    // A whole number of factors away from the start.
    const double factors = std::log(h / 0.01) / std::log(1.33352143216);
    EXPECT_NEAR(factors, std::round(factors), 1e-6);
    EXPECT_NE(std::round(factors), 0.0);
}

TEST(TaylorCalculator, BodiesThatTouchStopTheRunBeforeTheStep) {
    TestSystem system;
    system.GetEpoch()->SetTime(77.0);
    system.Add(4, 4e14, {0, 0, 0}, {1, 2, 3}, 6e6);
    system.Add(9, 1e14, {1e7, 0, 0}, {}, 4e6);
    system.Add(5, 2e14, {5e6, 0, 0}, {}, 1e6);
    system.Add(1, 0.0, {1e9, 0, 0}, {}, 1.0);
    auto* const looper = new CollisionLooper;
    looper->Run();
    {
        TaylorCalculator calculator(system.Portal(), system.Consumers(), looper);
        RecordingConsumer consumer(&system, calculator);
        system.RunUntilParked(&calculator);
        const CollisionLooper::Pairs expected = {{9, 5}, {9, 4}, {5, 4}};
        EXPECT_EQ(looper->WaitForCollisions(), expected);
        EXPECT_EQ(consumer.Times(), (std::vector<double>{77.0}));
        EXPECT_EQ(consumer.Positions(),
                  (std::vector<double>{0, 0, 0, 5e6, 0, 0, 1e7, 0, 0, 1e9, 0, 0}));
        EXPECT_EQ(consumer.Velocities(), (std::vector<double>{1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
        EXPECT_EQ(Iteration(ArchiveOf(calculator)), 0);
        EXPECT_TRUE(system.Find(4)->Position() == ThreeVector{});
    }
    looper->Lock();
    looper->Quit();
}

TEST(TaylorCalculator, WithoutAttractionBodiesMoveInStraightLines) {
    TestSystem system;
    const ThreeVector velocity = {3, -4, 0};
    Body* const body = system.Add(0, 0.0, {}, velocity);
    system.Add(1, 0.0, {}, {1, 1, 1});  // at the same place: massless bodies do not collide
    const auto calculator = MakeCalculator(&system);
    system.Run(calculator.get(), 7);
    const double time = system.GetEpoch()->Time();
    EXPECT_GT(time, 1e40);
    EXPECT_LT(Length(body->Position() - time * velocity), 1e-14 * time);
    EXPECT_TRUE(body->Velocity() == velocity);

    TestSystem empty;
    empty.Run(MakeCalculator(&empty).get(), 7);
    EXPECT_GT(empty.GetEpoch()->Time(), 1e40);
}

TEST(TaylorCalculator, TimeIsThatOfTheRunUnlessSomebodySetsIt) {
    class TimeSetter : public ReportConsumer {
    public:
        TimeSetter(TestSystem* system, Benaphore* const* writeOk)
            : system_(system), writeOk_(writeOk) {}
        bool LockConsumer() override { return true; }
        void UnlockConsumer() override {}
        void PrepareForGo(int32) override {}
        void ReadData(int32 count, double* times, double*, double*) override {
            all.insert(all.end(), times, times + count);
            if (all.size() != 200) return;
            system_->Portal()->WriteLock();
            system_->GetEpoch()->SetTime(5e9);
            system_->Portal()->WriteUnlock();
        }
        void ReadOk() override { release_ben(*writeOk_); }
        std::vector<double> all;

    private:
        TestSystem* const system_;
        Benaphore* const* const writeOk_;
    };
    TestSystem system(Planets(2, 2), 4, 1e-6);
    Benaphore* writeOk = nullptr;
    TimeSetter setter(&system, &writeOk);
    system.consumers.push_back(&setter);
    const auto calculator = MakeCalculator(&system);
    writeOk = calculator->WriteOk();
    setter.ReadOk();
    system.Run(calculator.get(), 300);
    const double h = setter.all[0];
    EXPECT_EQ(setter.all[200], 5e9 + h);
    // The steps are added up apart from the start, which is large and would round each of them.
    double elapsed = 0.0;
    for (int i = 200; i < 300; i++) {
        elapsed += h;
        ASSERT_EQ(setter.all[static_cast<size_t>(i)], 5e9 + elapsed);
    }
}

TEST(TaylorCalculator, PromotionLeavesTheSums) {
    const double cutoff = 1e-4;
    const PairWalk planets = Planets(5, 5);
    TestSystem system(planets, 4, cutoff);
    const auto calculator = MakeCalculator(&system);
    const auto interval =
        static_cast<int32>(std::pow(std::pow(cutoff, -1.0 / 3), 0.6666666666666666) * 4.281);
    system.Run(calculator.get(), interval);
    const std::vector<double> before = Doubles(ArchiveOf(*calculator), "DelR");
    EXPECT_EQ(Iteration(ArchiveOf(*calculator)), interval);
    system.Run(calculator.get(), 1);
    const BMessage archive = ArchiveOf(*calculator);
    EXPECT_EQ(Iteration(archive), 0);
    const std::vector<double> r = Doubles(archive, "DelR"), v = Doubles(archive, "DelV");
    for (int64 i = 0; i < 5; i++) {
        const size_t at = static_cast<size_t>(i) * 15;  // x
        EXPECT_NE(r[at], before[at]) << "the base took in the first part";
        EXPECT_EQ(r[at + 4], 0.0);
        EXPECT_NE(r[at + 3], 0.0);
        const double sum = r[at + 4] + r[at + 3] + r[at + 2] + r[at + 1] + r[at];
        const double speed =
            v[at / 15 * 12 + 3] + v[at / 15 * 12 + 2] + v[at / 15 * 12 + 1] + v[at / 15 * 12];
        const Body* const body = system.Find(i);
        EXPECT_NEAR(sum, body->Position().x, 4e-16 * std::fabs(sum));
        EXPECT_NEAR(speed, body->Velocity().x, 4e-16 * std::fabs(speed));
    }
}

// Parts above those that the order feeds can only be left from a run of a higher order.
TEST(TaylorParts, PromotionDropsPartsThatTheOrderDoesNotFeed) {
    const std::vector<double> r = {1, 10, 100, 1000, 10000}, v = {2, 20, 200, 2000};
    const struct {
        int32 order;
        std::vector<double> r, v;
    } cases[] = {{4, {11, 100, 1000, 10000, 0}, {22, 200, 2000, 0}},
                 {3, {11, 100, 1000, 0, 0}, {22, 200, 2000, 0}},
                 {2, {11, 100, 0, 0, 0}, {22, 200, 0, 0}}};
    for (const auto& [order, expectedR, expectedV] : cases) {
        BMessage archive, promoted;
        archive.AddInt64("IDs", 5);
        for (int axis = 0; axis < 3; axis++) {
            archive.AddDoubles("DelR", r.data(), 5);
            archive.AddDoubles("DelV", v.data(), 4);
        }
        TaylorParts parts;
        ASSERT_EQ(parts.Regenerate(archive), B_OK);
        parts.Promote(order);
        ASSERT_EQ(parts.Archive(&promoted), B_OK);
        for (int axis = 0; axis < 3; axis++) {
            const std::vector<double> foundR = Doubles(promoted, "DelR");
            const std::vector<double> foundV = Doubles(promoted, "DelV");
            EXPECT_TRUE(std::equal(expectedR.begin(), expectedR.end(), &foundR[5 * axis]));
            EXPECT_TRUE(std::equal(expectedV.begin(), expectedV.end(), &foundV[4 * axis]));
        }
    }
}

TEST(TaylorCalculator, AnEditedBodyRestartsAndTheOthersKeepTheirParts) {
    TestSystem system(Planets(3, 3), 4, 1e-6);
    const auto calculator = MakeCalculator(&system);
    system.Run(calculator.get(), 50);
    const std::vector<double> r = Doubles(ArchiveOf(*calculator), "DelR");
    const std::vector<double> v = Doubles(ArchiveOf(*calculator), "DelV");
    system.Find(1)->SetVelocity({1, 2, 3});
    system.Find(2)->SetPosition({4, 5, 6});
    system.Add(9, 1e30, {7, 8, 9}, {10, 11, 12});  // becomes the first
    system.Portal()->WriteLock();
    calculator->Recache();
    system.Portal()->WriteUnlock();

    const BMessage archive = ArchiveOf(*calculator);
    std::vector<double> expectedR = r, expectedV = v;
    std::fill_n(&expectedV[12], 12, 0.0);
    std::fill_n(&expectedR[30], 15, 0.0);
    const double plain[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    std::vector<double> newR(15, 0.0), newV(12, 0.0);
    for (size_t k = 0; k < 3; k++) {
        expectedV[12 + 4 * k] = plain[k];
        expectedR[30 + 5 * k] = plain[3 + k];
        newR[5 * k] = plain[6 + k];
        newV[4 * k] = plain[9 + k];
    }
    expectedR.insert(expectedR.begin(), newR.begin(), newR.end());
    expectedV.insert(expectedV.begin(), newV.begin(), newV.end());
    EXPECT_EQ(Doubles(archive, "DelR"), expectedR);
    EXPECT_EQ(Doubles(archive, "DelV"), expectedV);
}

TEST(TaylorCalculator, ASavedStateContinuesBitForBit) {
    const PairWalk planets = Planets(6, 4);
    TestSystem through(planets, 4, 1e-5), first(planets, 4, 1e-5);
    const auto uninterrupted = MakeCalculator(&through);
    through.Run(uninterrupted.get(), 500);
    BMessage state;
    {
        const auto calculator = MakeCalculator(&first);
        first.Run(calculator.get(), 500);
        state = ArchiveOf(*calculator);
    }
    // Through a file, to a new calculator.
    std::vector<std::byte> bytes;
    BMessage read;
    ASSERT_EQ(state.Flatten(&bytes), B_OK);
    ASSERT_EQ(read.Unflatten(bytes.data(), bytes.size()), B_OK);
    EXPECT_TRUE(read == state);
    TestSystem forgotten;
    for (int64 i = 0; i < 6; i++) {
        const Body* const body = first.Find(i);
        forgotten.Add(i, body->M(), body->Position(), body->Velocity());
    }
    forgotten.GetEpoch()->SetCutoff(1e-5);
    forgotten.Run(MakeCalculator(&forgotten).get(), 300);
    const auto resumed = MakeCalculator(&first);
    resumed->Regenerate(&read);
    EXPECT_TRUE(ArchiveOf(*resumed) == state);
    first.Run(resumed.get(), 300);
    through.Run(uninterrupted.get(), 300);
    EXPECT_TRUE(ArchiveOf(*resumed) == ArchiveOf(*uninterrupted));
    EXPECT_EQ(first.GetEpoch()->Time(), through.GetEpoch()->Time());
    for (int64 i = 0; i < 6; i++)
        EXPECT_TRUE(first.Find(i)->Position() == through.Find(i)->Position());
    EXPECT_FALSE(forgotten.Find(3)->Position() == through.Find(3)->Position())
        << "without the state the last digits differ";
}

TEST(TaylorCalculator, RegenerateTakesAllOrNothing) {
    const PairWalk planets = Planets(3, 2);
    TestSystem system(planets, 4, 1e-6);
    const auto source = MakeCalculator(&system);
    system.Run(source.get(), 20);
    const BMessage whole = ArchiveOf(*source);
    EXPECT_EQ(whole.what, FourCC("ARCV"));
    EXPECT_EQ(whole.CountNames(), 5);
    EXPECT_EQ(Iteration(whole), 20);

    for (const char* field : {"IDs", "DelR", "DelV", "Iter"}) {
        SCOPED_TRACE(field);
        BMessage without = whole, shorter = whole;
        without.RemoveName(field);
        shorter.RemoveData(field, 0);
        const auto fresh = MakeCalculator(&system);
        const BMessage nothing = ArchiveOf(*fresh);
        EXPECT_FALSE(nothing.HasName("IDs"));
        fresh->Regenerate(&without);
        EXPECT_TRUE(ArchiveOf(*fresh) == nothing);
        // Fewer identifiers than parts is a smaller system; all else is broken.
        fresh->Regenerate(&shorter);
        EXPECT_EQ(ArchiveOf(*fresh).HasName("IDs"), field == std::string("IDs"));
    }

    // A calculator that has a state keeps its parts, but not its place between promotions.
    const auto other = MakeCalculator(&system);
    other->Regenerate(const_cast<BMessage*>(&whole));
    other->Regenerate(nullptr);
    const BMessage kept = ArchiveOf(*other);
    EXPECT_EQ(Doubles(kept, "DelR"), Doubles(whole, "DelR"));
    EXPECT_EQ(Iteration(kept), 0);
}

TEST(TaylorCalculator, APauseAbandonsAStepHalfway) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(-1, 1);
    TestSystem system;
    for (int64 i = 0; i < 3000; i++)
        system.Add(i, 1e15, {1e12 * unit(random), 1e12 * unit(random), 1e12 * unit(random)}, {});
    const auto calculator = MakeCalculator(&system, 2);
    RecordingConsumer consumer(&system, *calculator);
    const ThreeVector before = system.Find(17)->Position();
    for (int i = 0; i < 5; i++) {
        calculator->UnPause();
        snooze(2000);
        calculator->Pause();
    }
    // Bodies, time and iteration count agree on how many steps there were, if any.
    const auto steps = static_cast<int32>(consumer.Times().size());
    EXPECT_EQ(Iteration(ArchiveOf(*calculator)), steps);
    EXPECT_EQ(system.Find(17)->Position() == before, steps == 0);
    EXPECT_EQ(system.GetEpoch()->Time(), steps == 0 ? 0.0 : consumer.Times().back());
}

TEST(StepControl, EndsWithAnyRateAndCutoff) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    for (double cutoff : {9.9e-4, 1e-11, 1e-300, 5e-324}) {
        for (int32 order : {2, 3, 4}) {
            StepControl control;
            control.Restart(cutoff, order);
            EXPECT_EQ(control.Powers().h, 0.01);
            EXPECT_GT(control.PromotionInterval(), 0);
            for (double rate : {kNever, 1e-100, kNaN, 1e300, 1.0}) {
                control.Adapt(rate);
                EXPECT_GT(control.Powers().h, 0.0) << cutoff << " " << order << " " << rate;
                EXPECT_LT(control.Powers().h, kNever);
            }
        }
    }
    StepControl control;
    control.Restart(1e-11, 4);
    EXPECT_EQ(control.PromotionInterval(), 1191);
}
