#include "Tests/Calculation/TaylorFixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

std::unique_ptr<TaylorCalculator> MakeCalculator(TestSystem* system, int32 threads) {
    auto calculator =
        std::make_unique<TaylorCalculator>(system->Portal(), system->Consumers(), nullptr);
    calculator->SetThreads(threads);
    return calculator;
}

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
