#include "Calculation/ForceEvaluator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <thread>

#include "Platform/Kernel/OS.h"
#include "Tests/Calculation/PairWalk.h"

namespace {

using Result = ForceEvaluator::Result;

// Bodies at odd and even distances, some at rest, some sharing a coordinate, masses of many sizes.
PairWalk RandomBodies(int32 count, int32 massive, uint32 seed, double radius = 0) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(-1, 1);
    PairWalk walk;
    walk.bodies.resize(count);
    walk.massive = massive;
    for (int32 i = 0; i < count; i++) {
        PairWalk::Body& body = walk.bodies[i];
        for (int k = 0; k < 3; k++) {
            body.position[k] = 1e11 * unit(random) * std::pow(10, unit(random));
            body.velocity[k] = random() % 8 == 0 ? 0 : 3e4 * unit(random);
        }
        if (random() % 8 == 0) body.position[random() % 3] = 0;
        body.gm = 1e20 * std::pow(10, -6 * (1 + unit(random)));
        // Massless is what comes behind the massive ones, not only a zero.
        if (i >= massive) body.gm = i % 3 == 0 ? -body.gm : 0;
        body.radius = radius * (1 + unit(random));
    }
    return walk;
}

void Evaluate(int32 order, ForceEvaluator* evaluator, Result expected) {
    StopFlags stop;
    stop.pauseCount = 0;
    ASSERT_EQ(evaluator->Evaluate(order, stop), expected);
}

// No number equals no number, whatever its sign and payload.
bool SameBits(double a, double b) {
    return std::bit_cast<uint64>(a) == std::bit_cast<uint64>(b) || (a != a && b != b);
}

void ExpectSame(const PairWalk& walk, const ForceEvaluator& evaluator, int32 order) {
    EXPECT_TRUE(SameBits(walk.rate, evaluator.Rate())) << walk.rate << " " << evaluator.Rate();
    int32 differences = 0;
    for (size_t i = 0; i < walk.bodies.size(); i++) {
        const PairWalk::Body& body = walk.bodies[i];
        for (int k = 0; k < 3; k++) {
            differences += !SameBits(body.acceleration[k], evaluator.Acceleration(k)[i]);
            if (order >= 3) differences += !SameBits(body.jerk[k], evaluator.Jerk(k)[i]);
            if (order >= 4) differences += !SameBits(body.snap[k], evaluator.Snap(k)[i]);
        }
    }
    EXPECT_EQ(differences, 0);
}

// Every way to evaluate that this machine has: instruction sets and numbers of threads.
using Evaluators = std::vector<std::pair<std::string, std::unique_ptr<ForceEvaluator>>>;

Evaluators AllEvaluators() {
    Evaluators evaluators;
    for (InstructionSet set :
         {InstructionSet::kBaseline, InstructionSet::kAvx2, InstructionSet::kAvx512})
        for (int32 threads : {1, 2, 3}) {
            auto evaluator = std::make_unique<ForceEvaluator>(threads);
            if (!evaluator->SetInstructionSet(set)) continue;
            evaluators.emplace_back("set " + std::to_string(static_cast<int>(set)) + ", threads " +
                                        std::to_string(threads),
                                    std::move(evaluator));
        }
    return evaluators;
}

void ExpectSameEverywhere(const Evaluators& evaluators, PairWalk walk) {
    for (int32 order : {2, 3, 4}) {
        walk.Evaluate(order);
        const Result expected = walk.collisions.empty() ? Result::kDone : Result::kCollision;
        for (const auto& [name, evaluator] : evaluators) {
            SCOPED_TRACE(testing::Message() << name << ", order " << order << ", bodies "
                                            << walk.bodies.size() << ", massive " << walk.massive);
            walk.CopyTo(evaluator.get());
            Evaluate(order, evaluator.get(), expected);
            EXPECT_EQ(evaluator->Collisions(), walk.collisions);
            if (expected == Result::kDone) ExpectSame(walk, *evaluator, order);
        }
    }
}

}  // namespace

TEST(ForceEvaluator, GivesTheBitsOfThePairWalk) {
    const Evaluators evaluators = AllEvaluators();
    // Large ones in between, whose remains behind the last body must not matter.
    std::vector<int32> counts = {1000, 0, 1, 100};
    for (int32 count = 2; count <= 17; count++)
        counts.push_back(count);
    for (int32 count : counts)
        for (int32 m = 0; m <= count; m++)
            if (count <= 17 || m <= 1 || m == count / 2 || m >= count - 1)
                ExpectSameEverywhere(evaluators, RandomBodies(count, m, 100 * count + m));
}

TEST(ForceEvaluator, KeepsNonsenseWhereThePairWalkHasIt) {
    const Evaluators evaluators = AllEvaluators();
    const double infinity = std::numeric_limits<double>::infinity();
    for (int32 count : {1, 2, 5, 13})
        for (double bad : {infinity, -infinity, std::nan("")})
            for (int32 m : {1, count}) {
                PairWalk walk = RandomBodies(count, m, count);
                walk.bodies[count / 2].velocity[1] = bad;
                ExpectSameEverywhere(evaluators, walk);
                walk.bodies[count / 2].radius = bad;
                ExpectSameEverywhere(evaluators, walk);
                walk = RandomBodies(count, m, count);
                walk.bodies[count / 2].position[2] = bad;
                ExpectSameEverywhere(evaluators, walk);
            }
}

TEST(ForceEvaluator, ListsCollidingPairsInTheOrderOfTheWalk) {
    const Evaluators evaluators = AllEvaluators();
    // Two massive bodies and two massless ones along a line; the spheres just touch, the massless
    // ones pass through each other.
    PairWalk line;
    line.massive = 2;
    line.bodies.resize(4);
    for (int i = 0; i < 4; i++) {
        line.bodies[i].position[0] = 2 * i;
        line.bodies[i].gm = i < 2 ? 1 : 0;
        line.bodies[i].radius = 1;
    }
    line.Evaluate(4);
    EXPECT_EQ(line.collisions, (std::vector<CollidingPair>{{2, 1}, {1, 0}}));
    ExpectSameEverywhere(evaluators, line);

    // All at one place, without size.
    for (PairWalk::Body& body : line.bodies)
        body.position[0] = body.radius = 0;
    line.Evaluate(4);
    EXPECT_EQ(line.collisions,
              (std::vector<CollidingPair>{{3, 1}, {2, 1}, {3, 0}, {2, 0}, {1, 0}}));
    ExpectSameEverywhere(evaluators, line);

    for (int32 count : {3, 9, 20, 300})
        for (uint32 seed = 0; seed < 5; seed++)
            ExpectSameEverywhere(evaluators, RandomBodies(count, count - 2, seed, 1e10));
}

// The derivatives of m d/|d|3 written out with tensors and with more digits: the jerk is T w, the
// snap H[w, w] + T D, where T = q3 - 3 d d q5 and H[w, w] = -6 (d.w) w q5 - 3 w2 d q5 + 15 (d.w)2 d
// q7.
TEST(ForceEvaluator, AgreesWithTheDerivativesOfTheForce) {
    using Real = long double;
    constexpr int32 kCount = 24, kMassive = 16;
    const PairWalk walk = RandomBodies(kCount, kMassive, 5);
    ForceEvaluator evaluator;
    walk.CopyTo(&evaluator);
    Evaluate(4, &evaluator, Result::kDone);
    for (int32 j = 0; j < kCount; j++) {
        // The sums and the sums of their terms' sizes.
        Real acceleration[3] = {}, jerk[3] = {}, snap[3] = {}, sizes[3] = {};
        for (int32 i = 0; i < kMassive; i++) {
            if (i == j) continue;
            Real d[3], w[3], da[3], r2 = 0, dw = 0, w2 = 0;
            for (int k = 0; k < 3; k++) {
                d[k] = static_cast<Real>(walk.bodies[i].position[k]) - walk.bodies[j].position[k];
                w[k] = static_cast<Real>(walk.bodies[i].velocity[k]) - walk.bodies[j].velocity[k];
                da[k] =
                    static_cast<Real>(evaluator.Acceleration(k)[i]) - evaluator.Acceleration(k)[j];
                r2 += d[k] * d[k];
                dw += d[k] * w[k];
                w2 += w[k] * w[k];
            }
            const Real m = walk.bodies[i].gm, q2 = 1 / r2, q3 = q2 * std::sqrt(q2), q5 = q3 * q2;
            for (int k = 0; k < 3; k++) {
                acceleration[k] += m * d[k] * q3;
                snap[k] += m * (15 * dw * dw * d[k] * q2 - 6 * dw * w[k] - 3 * w2 * d[k]) * q5;
                for (int l = 0; l < 3; l++) {
                    const Real tidal = (k == l ? q3 : 0) - 3 * d[k] * d[l] * q5;
                    jerk[k] += m * tidal * w[l];
                    snap[k] += m * tidal * da[l];
                }
                sizes[0] += m * q2;
                sizes[1] += m * q3 * std::sqrt(w2);
                sizes[2] += m * q3 * (w2 * std::sqrt(q2) + std::abs(da[k]));
            }
        }
        for (int k = 0; k < 3; k++) {
            EXPECT_LT(std::abs(evaluator.Acceleration(k)[j] - acceleration[k]), 1e-15 * sizes[0]);
            EXPECT_LT(std::abs(evaluator.Jerk(k)[j] - jerk[k]), 1e-15 * sizes[1]);
            EXPECT_LT(std::abs(evaluator.Snap(k)[j] - snap[k]), 1e-14 * sizes[2]);
        }
    }
}

TEST(ForceEvaluator, StopsHalfway) {
    ForceEvaluator evaluator(2);
    ASSERT_TRUE(evaluator.SetInstructionSet(InstructionSet::kBaseline));
    RandomBodies(5000, 5000, 1).CopyTo(&evaluator);
    StopFlags stop;
    EXPECT_EQ(evaluator.Evaluate(4, stop), Result::kStopped);
    stop.pauseCount = 0;
    stop.internalPause = true;
    EXPECT_EQ(evaluator.Evaluate(4, stop), Result::kStopped);
    stop.internalPause = false;

    const bigtime_t begin = system_time();
    ASSERT_EQ(evaluator.Evaluate(4, stop), Result::kDone);
    const bigtime_t whole = system_time() - begin;
    // Once in some attempts a busy machine lets us see how soon it stops.
    bigtime_t best = whole;
    for (int attempt = 0; attempt < 20 && best > whole / 20; attempt++) {
        bigtime_t asked = 0;
        std::thread stopper([&] {
            snooze(whole / 8);
            asked = system_time();
            stop.internalPause = true;
        });
        const Result result = evaluator.Evaluate(4, stop);
        const bigtime_t stopped = system_time();
        stopper.join();
        stop.internalPause = false;
        if (result == Result::kStopped) best = std::min(best, stopped - asked);
    }
    EXPECT_LE(best, whole / 20);
}
