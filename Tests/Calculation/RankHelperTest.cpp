// Forces that several ranks evaluate: the same bits as those of one process.
#include "Calculation/RankHelper.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "Calculation/ForceEvaluator.h"
#include "Calculation/Series/SeriesStepper.h"
#include "Tests/Calculation/ThreadRanks.h"

namespace {

using Numbers = std::vector<double>;

StopFlags* Going() {
    static StopFlags flags;
    flags.pauseCount = 0;
    return &flags;
}

void Help(Ranks* ranks) {
    RankHelper(ranks, 1).Help();
}

// With ranks, if there are any.
template <class Work>
Numbers With(int32 ranks, const Work& work) {
    Numbers result;
    const auto first = [&](Ranks* all) {
        result = work(all);
        RankHelper::End(all);
    };
    if (ranks == 0)
        result = work(nullptr);
    else
        ThreadRanks::Run(ranks, first, Help);
    return result;
}

Numbers RandomNumbers(std::size_t count, uint32 seed) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> distribution(-1.0, 1.0);
    Numbers numbers(count);
    for (double& number : numbers)
        number = distribution(generator);
    return numbers;
}

void Fill(ForceEvaluator* evaluator, double radius) {
    const auto bodies = static_cast<std::size_t>(evaluator->CountBodies());
    const Numbers random = RandomNumbers(7 * bodies, 1);
    for (std::size_t i = 0; i < bodies; i++) {
        for (int axis = 0; axis < 3; axis++) {
            evaluator->Position(axis)[i] = random[7 * i + static_cast<std::size_t>(axis)];
            evaluator->Velocity(axis)[i] = random[7 * i + 3 + static_cast<std::size_t>(axis)];
        }
        const bool isMassive = static_cast<int32>(i) < evaluator->CountMassive();
        evaluator->GM()[i] = isMassive ? 1.5 + random[7 * i + 6] : 0.0;
        evaluator->Radius()[i] = radius;
    }
}

// What an evaluation comes to: its outcome, rate and touching pairs, and its rows.
void Append(ForceEvaluator* evaluator, int32 order, double radius, Numbers* to) {
    Fill(evaluator, radius);
    const auto result = evaluator->Evaluate(order, *Going());
    to->push_back(static_cast<double>(result));
    for (const CollidingPair& pair : evaluator->Collisions()) {
        to->push_back(pair.later);
        to->push_back(pair.earlier);
    }
    if (result != ForceEvaluator::Result::kDone) return;
    to->push_back(evaluator->Rate());
    for (int axis = 0; axis < 3; axis++)
        for (int32 i = 0; i < evaluator->CountBodies(); i++) {
            to->push_back(evaluator->Acceleration(axis)[i]);
            if (order >= 3) to->push_back(evaluator->Jerk(axis)[i]);
            if (order >= 4) to->push_back(evaluator->Snap(axis)[i]);
        }
}

TEST(RankHelper, ForcesOfLowOrdersAreTheSameBits) {
    const auto work = [](Ranks* ranks) {
        Numbers all;
        ForceEvaluator evaluator(1);
        evaluator.SetRanks(ranks);
        // More and fewer bodies than ranks have room for; some touch.
        for (const auto& [bodies, massive] : {std::pair{61, 50}, {5, 2}, {100, 100}, {61, 50}})
            for (const int32 order : {2, 3, 4}) {
                evaluator.Resize(bodies, massive);
                Append(&evaluator, order, 0.0, &all);
                Append(&evaluator, order, 0.1, &all);
            }
        return all;
    };
    const Numbers alone = With(0, work);
    for (const int32 ranks : {1, 2, 3, 7})
        EXPECT_EQ(With(ranks, work), alone) << ranks;
}

Numbers Steps(Ranks* ranks, int32 bodies, int32 massive) {
    SeriesStepper stepper(1);
    stepper.SetRanks(ranks);
    stepper.Resize(16, bodies, massive);
    const Numbers random = RandomNumbers(7 * static_cast<std::size_t>(bodies), 2);
    for (int32 i = 0; i < bodies; i++) {
        const double* const own = &random[7 * static_cast<std::size_t>(i)];
        stepper.SetBody(i, {own[0], own[1], own[2]}, {own[3], own[4], own[5]},
                        i < massive ? 1.5 + own[6] : 0.0);
    }
    stepper.Start(1e-12, 0.0);
    Numbers all;
    for (int32 step = 0; step < 3; step++) {
        EXPECT_EQ(stepper.MakeStep(*Going()), SeriesStepper::Result::kDone);
        all.push_back(stepper.Step().Length());
        const auto slots =
            static_cast<std::size_t>(stepper.End().CountVectors()) * SplitStates::kRows * kSlots;
        all.insert(all.end(), stepper.End().High(), stepper.End().High() + slots);
        all.insert(all.end(), stepper.End().Low(), stepper.End().Low() + slots);
    }
    return all;
}

TEST(RankHelper, SeriesAreTheSameBits) {
    // In a ring, and in 1, 8 and 32 groups of tiles.
    for (const auto& [bodies, massive] : {std::pair{40, 9}, {30, 30}, {90, 70}, {300, 264}}) {
        SCOPED_TRACE(massive);
        const auto work = [size = bodies, heavy = massive](Ranks* ranks) {
            return Steps(ranks, size, heavy);
        };
        const Numbers alone = With(0, work);
        // More ranks than groups among them.
        for (const int32 ranks : massive > 200 ? std::vector{3} : std::vector{1, 2, 3, 9})
            EXPECT_EQ(With(ranks, work), alone) << ranks;
    }
}

TEST(RankHelper, WhatIsGivenUpHalfwayIsMadeAgain) {
    const auto work = [](Ranks* ranks) {
        Numbers all;
        StopFlags stopped;
        ForceEvaluator evaluator(1);
        evaluator.SetRanks(ranks);
        evaluator.Resize(61, 50);
        Fill(&evaluator, 0.0);
        if (ranks) {
            EXPECT_EQ(evaluator.Evaluate(4, stopped), ForceEvaluator::Result::kStopped);
        }
        Append(&evaluator, 4, 0.0, &all);
        SeriesStepper stepper(1);
        stepper.SetRanks(ranks);
        stepper.Resize(8, 70, 70);
        const Numbers random = RandomNumbers(210, 3);
        for (int32 i = 0; i < 70; i++) {
            const double* const own = &random[3 * static_cast<std::size_t>(i)];
            stepper.SetBody(i, {own[0], own[1], own[2]}, {}, 1.0);
        }
        stepper.Start(1e-10, 0.0);
        if (ranks) {
            EXPECT_EQ(stepper.MakeStep(stopped), SeriesStepper::Result::kStopped);
        }
        EXPECT_EQ(stepper.MakeStep(*Going()), SeriesStepper::Result::kDone);
        all.push_back(stepper.Step().Length());
        return all;
    };
    EXPECT_EQ(With(3, work), With(0, work));
}

}  // namespace
