// Runs back in time, and what bodies that touch do where they need not merge.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Calculation/CollisionMailbox.h"
#include "Calculation/MotionWatcher.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessenger.h"
#include "Tests/Calculation/TaylorFixtures.h"

namespace {

constexpr int32 kOrder = 16;
constexpr double kCutoff = 1e-16;

void RunUntil(TestSystem* system, Calculator* calculator, double time, bool isHeld = false) {
    calculator->SetBackwards(time < system->GetEpoch()->Time());
    calculator->SetRunLimit(0, time);
    system->RunUntilParked(calculator, isHeld);
    EXPECT_EQ(system->GetEpoch()->Time(), time);
}

// Two bodies of equal mass on an ellipse, one length unit apart at the most, and a light third one
// far out. The period is 2 pi.
void AddOrbits(TestSystem* system) {
    system->Add(0, 0.5, {0.4, 0, 0}, {0, 0.612372435695794, 0});
    system->Add(1, 0.5, {-0.4, 0, 0}, {0, -0.612372435695794, 0});
    system->Add(2, 1e-6, {0, 30, 5}, {-0.18, 0, 0});
}

double Moved(const TestSystem& system, const TestSystem& start) {
    double most = 0.0;
    for (int64 id = 0; id < 3; id++)
        most = std::max(most, Length(system.Find(id)->Position() - start.Find(id)->Position()));
    return most;
}

// Stands for the owner of a calculator, who is told what touches and why a run ends.
class Owner final : public BLooper {
public:
    static constexpr uint32 kAsk = FourCC("ask?");

    void MessageReceived(BMessage* message) override {
        if (message->what == CollisionMailbox::kCollisionMessage) {
            collisions++;
            pairs = CollisionMailbox::PairsOf(*message);
        }
        if (const auto told = RunEnding::From(*message)) ending = *told;
        if (message->what == kAsk) SendReply(BMessage(B_REPLY));
    }
    int collisions = 0;
    std::vector<CollisionMailbox::Pair> pairs;  // of the last one
    RunEnding ending;
};

class Watcher final : public MotionWatcher {
public:
    void BodiesAre(double, const std::vector<Body*>&, int32) override {}
    void Moved(const Piece& piece) override {
        EXPECT_EQ(piece.fromTime, lastTime);
        lastTime = piece.toTime;
    }
    void Touched(double time, const BodyArrays& bodies,
                 const std::vector<CollidingPair>& pairs) override {
        times.push_back(time);
        for (const CollidingPair& pair : pairs)
            distances.push_back(
                std::fabs(bodies.position[0][pair.later] - bodies.position[0][pair.earlier]));
    }
    double lastTime = 0.0;
    std::vector<double> times, distances;
};

// A heavy ball at rest and a light one that flies through it, off the centre by an eighth.
struct PassingTest : testing::Test {
    PassingTest() {
        owner->Run();
        system.Add(0, 1e-9, {}, {}, 1.0);
        system.Add(1, 1e-12, {10, 0.125, 0}, {-1, 0, 0}, 0.25);
        calculator.AddWatcher(&watcher);
    }
    ~PassingTest() override { BLooper::QuitIfAlive(owner); }
    // What was posted is handled.
    void Settle() const {
        const BMessage request(Owner::kAsk);
        BMessage answer;
        EXPECT_EQ(BMessenger(owner).SendMessage(&request, &answer), B_OK);
    }

    Owner* const owner = new Owner;
    TestSystem system{kOrder, 1e-14};
    TaylorCalculator calculator{system.Portal(), system.Consumers(), owner};
    Watcher watcher;
};

}  // namespace

TEST(BackwardsRun, ReturnsToItsStart) {
    const double kPeriod = 2 * std::acos(-1.0);
    TestSystem start(kOrder, kCutoff);
    AddOrbits(&start);
    for (const auto& [orbits, error] : {std::pair{100, 5e-12}, {1000, 5e-10}}) {
        TestSystem system(kOrder, kCutoff);
        AddOrbits(&system);
        const auto calculator = MakeCalculator(&system);
        RecordingConsumer consumer(&system, *calculator);
        RunUntil(&system, calculator.get(), orbits * kPeriod);
        EXPECT_GT(Moved(system, start), 1.0);
        const auto turned = static_cast<std::ptrdiff_t>(consumer.Times().size());
        RunUntil(&system, calculator.get(), 0.0);
        EXPECT_LT(Moved(system, start), error);
        EXPECT_TRUE(std::is_sorted(consumer.Times().begin() + turned, consumer.Times().end(),
                                   std::greater<>()));
    }
}

// Held, paused, or saved and read by somebody else on the way back: the same bits.
TEST(BackwardsRun, GoesOnToTheSameBits) {
    constexpr double kEnd = -40.0;
    TestSystem whole(kOrder, kCutoff);
    AddOrbits(&whole);
    const auto reference = MakeCalculator(&whole);
    RunUntil(&whole, reference.get(), kEnd);
    for (const int way : {0, 1, 2}) {
        TestSystem system(kOrder, kCutoff);
        AddOrbits(&system);
        auto calculator = MakeCalculator(&system);
        for (const double time : {-0.01, -11.3, -11.4, -30.0, kEnd}) {
            RunUntil(&system, calculator.get(), time, way == 0 && time < -1);
            if (way != 2) continue;
            BMessage saved;
            ASSERT_EQ(calculator->ArchiveRun(&saved), B_OK);
            calculator = MakeCalculator(&system);
            ASSERT_EQ(calculator->ResumeRun(saved), B_OK);
            EXPECT_TRUE(calculator->IsBackwards());
        }
        EXPECT_EQ(Moved(system, whole), 0.0);
    }
}

TEST(BackwardsRun, LowOrdersKnowNoWayBack) {
    TestSystem system(4, 1e-6);
    AddOrbits(&system);
    const auto calculator = MakeCalculator(&system);
    calculator->SetBackwards(true);
    system.Run(calculator.get(), 10);
    EXPECT_GT(system.GetEpoch()->Time(), 0.0);
    EXPECT_FALSE(calculator->IsBackwards());
}

TEST_F(PassingTest, AContactOnTheWayBackEndsTheRun) {
    system.Find(1)->SetVelocity({1, 0, 0});
    calculator.SetBackwards(true);
    calculator.SetRunLimit(0, -100.0);
    system.RunUntilParked(&calculator);
    Settle();
    EXPECT_EQ(owner->collisions, 0);
    EXPECT_EQ(owner->ending.reason, RunEnding::Reason::kTouchedBackwards);
    EXPECT_EQ(owner->ending.time, system.GetEpoch()->Time());
    ASSERT_TRUE(owner->ending.pair);
    EXPECT_EQ(owner->ending.pair->later, 1);
    EXPECT_NEAR(owner->ending.pair->distance, 1.25, 1e-14);
    EXPECT_NEAR(owner->ending.time, -10.0 + std::sqrt(1.25 * 1.25 - 0.125 * 0.125), 1e-7);
}

// Each time they meet it is told once, however often the run is stopped while they overlap.
TEST_F(PassingTest, BodiesThatPassAreToldOnceAndMoveAsIfTheyWerePoints) {
    TestSystem points(kOrder, 1e-14);
    points.Add(0, 1e-9, {}, {});
    points.Add(1, 1e-12, {10, 0.125, 0}, {-1, 0, 0});
    const auto reference = MakeCalculator(&points);
    RunUntil(&points, reference.get(), 20.0);

    system.GetEpoch()->SetOnContact(kContactPasses);
    for (const double time : {9.0, 9.5, 10.5, 20.0})
        RunUntil(&system, &calculator, time);
    Settle();
    EXPECT_EQ(owner->collisions, 0);
    ASSERT_EQ(watcher.times.size(), 1u);
    EXPECT_NEAR(watcher.times[0], 10.0 - std::sqrt(1.25 * 1.25 - 0.125 * 0.125), 1e-7);
    EXPECT_EQ(system.Find(1)->Position(), points.Find(1)->Position());
    // And again on the way back.
    RunUntil(&system, &calculator, 0.0);
    EXPECT_EQ(watcher.times.size(), 2u);
}

TEST_F(PassingTest, AStopTellsAPairOnce) {
    system.GetEpoch()->SetOnContact(kContactStops);
    calculator.SetRunLimit(0, 20.0);
    system.RunUntilParked(&calculator);
    Settle();
    EXPECT_EQ(owner->collisions, 1);
    const double contact = system.GetEpoch()->Time();
    EXPECT_NEAR(contact, 8.756, 1e-3);
    EXPECT_TRUE(calculator.HasStoppedItself());
    // Whoever goes on goes through, whether the run is held, another one begins, or one that knows
    // what was saved.
    BMessage saved = ArchiveOf(calculator);
    {
        const auto reader = MakeCalculator(&system);
        reader->Regenerate(&saved);
        RunUntil(&system, reader.get(), 9.0);
    }
    watcher.lastTime = 9.0;
    RunUntil(&system, &calculator, 9.5);
    RunUntil(&system, &calculator, 20.0, true);
    Settle();
    EXPECT_EQ(owner->collisions, 1);
    EXPECT_EQ(watcher.times.size(), 1u);
}

// Pairs far from each other that are each other's images: the later body of each first, and the
// pair of the later bodies before the other.
TEST_F(PassingTest, ContactsAtOneTimeAreToldInTheOrderOfThePairWalk) {
    for (const int32 order : {4, 16}) {
        TestSystem mirrored(order, 1e-10);
        for (const int64 side : {0, 1}) {
            const double sign = side == 0 ? 1.0 : -1.0;
            mirrored.Add(side, 1e-9, {0, 0, 1000 * sign}, {}, 1.0);
            mirrored.Add(2 + side, 1e-12, {10, 0, 1000 * sign}, {-1, 0, 0}, 0.25);
        }
        TaylorCalculator both(mirrored.Portal(), mirrored.Consumers(), owner);
        mirrored.RunUntilParked(&both);
        Settle();
        ASSERT_EQ(owner->pairs.size(), 2u) << order;
        EXPECT_EQ(owner->pairs[0].later, 3);
        EXPECT_EQ(owner->pairs[0].earlier, 1);
        EXPECT_EQ(owner->pairs[1].later, 2);
        EXPECT_EQ(owner->pairs[1].earlier, 0);
    }
}

// Where a contact is to be depends on the last places of the radius: just before the first step's
// end, there, or just after it.
TEST(SeriesRun, AContactWhereAStepEndsCountsTheStep) {
    const auto fill = [](TestSystem* system, double radius) {
        system->Add(0, 1.0, {}, {}, radius);
        system->Add(1, 1e-3, {10, 0.125, 0}, {-1, 0, 0}, 0.0);
        system->GetEpoch()->SetOnContact(kContactStops);
    };
    TestSystem apart(kOrder, 1e-14);
    fill(&apart, 0.0);
    const auto calculator = MakeCalculator(&apart);
    calculator->SetRunLimit(1, HUGE_VAL);
    apart.RunUntilParked(calculator.get());
    const double end = apart.GetEpoch()->Time();
    const ThreeVector d = apart.Find(0)->Position() - apart.Find(1)->Position();
    double radius = Length(d) * (1 - 5e-16);
    int32 atEnd = 0;
    for (int32 i = 0; i < 10; i++, radius = std::nextafter(radius, HUGE_VAL)) {
        TestSystem system(kOrder, 1e-14);
        fill(&system, radius);
        const auto stopping = MakeCalculator(&system);
        stopping->SetRunLimit(0, 1e3);
        system.RunUntilParked(stopping.get());
        EXPECT_EQ(stopping->StepsTaken(), system.GetEpoch()->Time() < end ? 0 : 1);
        atEnd += system.GetEpoch()->Time() == end;
    }
    EXPECT_GT(atEnd, 0);
}

// Low orders see a contact where a step begins.
TEST_F(PassingTest, AStopOfALowOrderTellsAPairOnce) {
    system.GetEpoch()->SetOrder(4);
    system.GetEpoch()->SetCutoff(1e-6);
    system.GetEpoch()->SetOnContact(kContactStops);
    // Meets the ball while the other one is in it.
    system.Add(2, 0.0, {0.25, -11, 0}, {0, 1, 0}, 0.25);
    const auto goOn = [this](Calculator* with, bool isHeld) {
        with->SetRunLimit(0, 20.0);
        system.RunUntilParked(with, isHeld);
        Settle();
    };
    goOn(&calculator, false);
    EXPECT_EQ(owner->collisions, 1);
    EXPECT_NEAR(system.GetEpoch()->Time(), 8.756, 0.02);
    BMessage atContact, runAtContact;
    ASSERT_EQ(calculator.Archive(&atContact), B_OK);
    goOn(&calculator, false);
    EXPECT_EQ(owner->collisions, 2);
    EXPECT_NEAR(system.GetEpoch()->Time(), 9.775, 0.02);
    // Whoever goes on goes through, and meets again whom it has left.
    ASSERT_EQ(calculator.ArchiveRun(&runAtContact), B_OK);
    const double time = system.GetEpoch()->Time();
    TaylorCalculator other(system.Portal(), system.Consumers(), owner);
    ASSERT_EQ(other.ResumeRun(runAtContact), B_OK);
    goOn(&other, true);
    EXPECT_EQ(owner->collisions, 2);
    EXPECT_GE(system.GetEpoch()->Time(), 20.0);
    EXPECT_FALSE(ArchiveOf(other).HasName("Passed"));
    system.Find(1)->SetVelocity({1, 0, 0});
    other.SetRunLimit(0, 40.0);
    system.RunUntilParked(&other);
    Settle();
    EXPECT_EQ(owner->collisions, 3);
    // One who knows only of the first contact is told of the second one.
    system.Find(0)->SetPosition({});
    system.Find(1)->SetPosition({0.25, 0.125, 0});
    system.Find(2)->SetPosition({0.25, -1.2, 0});
    system.GetEpoch()->SetTime(time);
    TaylorCalculator third(system.Portal(), system.Consumers(), owner);
    third.Regenerate(&atContact);
    goOn(&third, false);
    EXPECT_EQ(owner->collisions, 4);
    ASSERT_EQ(owner->pairs.size(), 1u);
    EXPECT_EQ(owner->pairs[0].later, 2);
}

// A run from the beginning, or one in which bodies merge after all, meets the contact again.
TEST_F(PassingTest, AnotherRunStopsAtTheSameContact) {
    const double start = system.GetEpoch()->Time();
    const auto rewind = [&] {
        system.Find(0)->SetPosition({});
        system.Find(0)->SetVelocity({});
        system.Find(1)->SetPosition({10, 0.125, 0});
        system.Find(1)->SetVelocity({-1, 0, 0});
        system.GetEpoch()->SetTime(start);
        watcher.lastTime = start;
    };
    system.GetEpoch()->SetOnContact(kContactStops);
    for (const int runs : {1, 2}) {
        rewind();
        calculator.SetRunLimit(0, 20.0);
        system.RunUntilParked(&calculator);
        Settle();
        EXPECT_EQ(owner->collisions, runs);
    }
}

// Of what was passed before only that counts which still touches.
TEST_F(PassingTest, WhoIsToMergeFromNowOnMeetsWhatHePasses) {
    for (const int32 order : {4, 16})
        for (const double change : {9.5, 11.3, 15.0})
            for (const bool isHeld : {false, true}) {
                SCOPED_TRACE(testing::Message() << order << ' ' << change << ' ' << isHeld);
                TestSystem bodies(order, order == 4 ? 1e-6 : 1e-14);
                bodies.Add(0, 1e-9, {}, {}, 1.0);
                bodies.Add(1, 1e-12, {10, 0.125, 0}, {-1, 0, 0}, 0.25);
                bodies.GetEpoch()->SetOnContact(order == 4 ? kContactStops : kContactPasses);
                TaylorCalculator passing(bodies.Portal(), bodies.Consumers(), owner);
                while (bodies.GetEpoch()->Time() < change) {
                    passing.SetRunLimit(0, change);
                    bodies.RunUntilParked(&passing);
                }
                Settle();
                owner->collisions = 0;
                const double time = bodies.GetEpoch()->Time();
                bodies.GetEpoch()->SetOnContact(kContactMerges);
                passing.SetRunLimit(0, 20.0);
                bodies.RunUntilParked(&passing, isHeld);
                Settle();
                EXPECT_EQ(owner->collisions, change < 10.0 ? 1 : 0);
                if (change < 10.0) {
                    EXPECT_EQ(bodies.GetEpoch()->Time(), time);
                }
            }
}
