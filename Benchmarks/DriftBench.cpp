// What a million years of the outer planets lose of their energy at order 16, and how that grows:
// errors of rounding that are as often up as down add up to the root of time.
#include <algorithm>
#include <cmath>
#include <vector>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Tests/Calculation/Series/SeriesFixtures.h"

namespace {

constexpr double kTolerance = 1e-16;
constexpr int32 kOrder = 16;
constexpr int32 kStarts = 16;
constexpr double kTime = 1e6 * kYear;
// Each twice as far as the one before.
constexpr int32 kTimes = 7;

// Of the sums of two numbers that the states are.
long double EnergyOf(const SeriesStepper& stepper) {
    const SplitStates& states = stepper.End();
    const auto at = [&](int32 body, int32 row) {
        const std::size_t index = SplitStates::Index(states.SlotOf(body), row);
        return static_cast<long double>(states.High()[index]) + states.Low()[index];
    };
    long double energy = 0;
    for (int32 i = 0; i < stepper.CountBodies(); i++) {
        for (int32 row = 3; row < 6; row++)
            energy += stepper.GM(i) * at(i, row) * at(i, row) / 2;
        for (int32 j = i + 1; j < stepper.CountBodies(); j++) {
            long double square = 0;
            for (int32 row = 0; row < 3; row++)
                square += (at(i, row) - at(j, row)) * (at(i, row) - at(j, row));
            energy -= static_cast<long double>(stepper.GM(i)) * stepper.GM(j) / std::sqrt(square);
        }
    }
    return energy;
}

// Errors at the times, against the end of the first step.
std::vector<double> ErrorsFrom(const PointSystem& system) {
    SeriesStepper stepper(1);
    Load(system, &stepper, kOrder);
    stepper.Start(kTolerance, 0.0);
    StopFlags stop;
    stop.pauseCount = 0;
    long double start = 0;
    std::vector<double> errors;
    for (double time = kTime / (1 << (kTimes - 1)); time <= kTime; time *= 2) {
        do {
            if (stepper.MakeStep(stop) != SeriesStepper::Result::kDone) return {};
            if (start == 0) start = EnergyOf(stepper);
        } while (stepper.Step().End().high < time);
        errors.push_back(static_cast<double>(EnergyOf(stepper) / start - 1));
    }
    return errors;
}

// Of the line through the logarithms, at equal distances.
double Slope(const std::vector<double>& squares) {
    double sum = 0.0;
    double weights = 0.0;
    for (std::size_t i = 0; i < squares.size(); i++) {
        const double x = static_cast<double>(i) - (static_cast<double>(squares.size()) - 1) / 2;
        sum += x * std::log2(squares[i]) / 2;
        weights += x * x;
    }
    return sum / weights;
}

}  // namespace

void BenchDrift(BenchTable* table) {
    std::vector<double> squares(kTimes);
    double greatest = 0.0;
    for (int32 i = 0; i < kStarts; i++) {
        PointSystem system = OuterPlanets();
        system[1].position.x += 1e3 * i;
        const std::vector<double> errors = ErrorsFrom(system);
        for (std::size_t k = 0; k < errors.size(); k++)
            squares[k] += errors[k] * errors[k] / kStarts;
        greatest = std::max(greatest, errors.empty() ? HUGE_VAL : std::fabs(errors.back()));
    }
    table->AddAtMost("order 16, energy error, 10^6 years of outer planets", 1e-13, greatest, "");
    table->AddFigure("the same, root mean square of 16 starts", std::sqrt(squares.back()), "");
    for (int32 k = 0; k + 1 < kTimes; k++)
        table->AddFigure("after 1/" + std::to_string(1 << (kTimes - 1 - k)) + " of that time",
                         std::sqrt(squares[static_cast<std::size_t>(k)]), "");
    const double slope = Slope(squares);
    table->AddFigure("exponent of time in its growth", slope, "");
    table->AddAtMost("the same, off the half of what comes by chance", 0.15, std::fabs(slope - 0.5),
                     "");
}
