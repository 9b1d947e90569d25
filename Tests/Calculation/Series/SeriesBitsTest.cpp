// The series stepper's results are the same bits on every machine, on any number of threads, and
// when a run is taken up again.
#include <gtest/gtest.h>

#include <bit>

#include "Calculation/Series/SeriesStepper.h"
#include "Tests/Calculation/Series/SeriesFixtures.h"

namespace {

constexpr double kTolerance = 1e-14;
constexpr int32 kSteps = 12;

struct Count {
    int32 bodies;
    int32 massive;
};
constexpr Count kCounts[] = {{2, 2},     {3, 3},   {4, 4},   {5, 5},    {7, 7},     {8, 8},
                             {9, 9},     {13, 13}, {16, 16}, {17, 17},  {33, 33},   {100, 100},
                             {260, 250}, {4, 1},   {30, 3},  {200, 10}, {120, 100}, {40, 17}};

class SeriesBitsTest : public testing::TestWithParam<Count> {
protected:
    SeriesBitsTest() { stop_.pauseCount = 0; }
    [[nodiscard]] PointSystem System() const {
        return Cluster(GetParam().bodies, GetParam().massive);
    }

    bool Step(SeriesStepper* stepper, int32 steps) {
        for (int32 i = 0; i < steps; i++)
            if (stepper->MakeStep(stop_) != SeriesStepper::Result::kDone) return false;
        return true;
    }

    static uint64 Digest(SeriesStepper* stepper) {
        uint64 digest = 14695981039346656037u;
        const auto add = [&digest](double number) {
            digest = (digest ^ std::bit_cast<uint64>(number)) * 1099511628211u;
        };
        const SeriesStep& step = stepper->Step();
        add(step.End().high);
        add(step.End().low);
        add(step.Parts());
        const SplitStates& end = stepper->End();
        for (int32 i = 0; i < stepper->CountBodies(); i++)
            for (int32 row = 0; row < SplitStates::kRows; row++) {
                add(end.High()[SplitStates::Index(end.SlotOf(i), row)]);
                add(end.Low()[SplitStates::Index(end.SlotOf(i), row)]);
            }
        for (const PointBody& body : StateAt(stepper, 0.37 * step.Theta()))
            for (const double number : {body.position.x, body.velocity.z})
                add(number);
        return digest;
    }

    // 0 if a step failed.
    uint64 Run(SeriesStepper* stepper, int32 order) {
        Load(System(), stepper, order);
        stepper->Start(kTolerance, 0.0);
        return Step(stepper, kSteps) ? Digest(stepper) : 0;
    }

    StopFlags stop_;
};

}  // namespace

TEST_P(SeriesBitsTest, AreThoseOfEveryMachineAndNumberOfThreads) {
    for (const int32 order : {8, 16, 24}) {
        // These take long, and differ from fewer bodies in what threads share.
        if (GetParam().massive > 200 && order != 16) continue;
        SeriesStepper one(1);
        const uint64 digest = Run(&one, order);
        ASSERT_NE(digest, 0u);
        for (const InstructionSet set :
             {InstructionSet::kBaseline, InstructionSet::kAvx2, InstructionSet::kAvx512})
            if (one.SetInstructionSet(set)) {
                EXPECT_EQ(Run(&one, order), digest)
                    << "order " << order << ", instruction set " << static_cast<int>(set);
            }
        if (int64{GetParam().bodies} * GetParam().massive < 1000) continue;
        for (const int32 threads : {2, 3, 8}) {
            SeriesStepper many(threads);
            EXPECT_EQ(Run(&many, order), digest) << "order " << order << ", threads " << threads;
        }
    }
}

TEST_P(SeriesBitsTest, AreThoseOfARunThatIsTakenUpAgain) {
    SeriesStepper whole(1);
    ASSERT_NE(Run(&whole, 16), 0u);
    SeriesStepper first(1);
    Load(System(), &first, 16);
    first.Start(kTolerance, 0.0);
    ASSERT_TRUE(Step(&first, 5));
    // What a saved run knows of the step that it stands in.
    SeriesStepper second(1);
    Load(System(), &second, 16);
    const SplitStates& begin = first.Begin();
    for (int32 i = 0; i < GetParam().bodies; i++) {
        const auto three = [&](const double* numbers, int32 row) {
            const int32 slot = begin.SlotOf(i);
            return ThreeVector{numbers[SplitStates::Index(slot, row)],
                               numbers[SplitStates::Index(slot, row + 1)],
                               numbers[SplitStates::Index(slot, row + 2)]};
        };
        second.SetBody(i, three(begin.High(), 0), three(begin.High(), 3), first.GM(i));
        second.SetLow(i, three(begin.Low(), 0), three(begin.Low(), 3));
    }
    second.Resume(kTolerance, first.Place());
    ASSERT_TRUE(Step(&second, 1));
    EXPECT_EQ(Digest(&second), Digest(&first));
    ASSERT_TRUE(Step(&second, kSteps - 5));
    EXPECT_EQ(Digest(&second), Digest(&whole));
}

INSTANTIATE_TEST_SUITE_P(Counts, SeriesBitsTest, testing::ValuesIn(kCounts));
