// How exact runs are, against solutions that are known: orbits of two bodies in closed form, and
// the figure eight and the outer planets in arithmetic of 33 digits. The figures of
// Documentation/Accuracy.md are made here.
#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Calculation/Calculator.h"
#include "Model/Systems/Body.h"
#include "Simulation/Document/SystemState.h"
#include "Simulation/History/SideRun.h"
#include "Tests/Calculation/Series/SeriesFixtures.h"

namespace {

using Real = long double;

constexpr int kOrbits = 10;
constexpr double kOrbitTime = 0.99991 * kYear;  // somewhat less than an orbit: places differ

struct Result {
    SystemState state;
    double steps = 0.0;
};

Result RunOf(const PointSystem& system, int32 order, double cutoff, double time) {
    auto epoch = std::make_unique<Epoch>();
    epoch->SetOrder(order);
    epoch->SetCutoff(cutoff);
    for (std::size_t i = 0; i < system.size(); i++) {
        auto body =
            std::make_unique<Body>("", static_cast<int64>(i), rgb_color{}, rgb_color{}, kOriginID);
        body->SetM(system[i].gm);
        body->SetRadius(0.0);
        body->SetPosition(system[i].position);
        body->SetVelocity(system[i].velocity);
        epoch->RootSystem()->AddChild(body.release());
    }
    SideRun run(std::move(epoch));
    run.GetCalculator()->SetRunLimit(0, time);
    run.Run(false, [] { return true; });
    return {TakeState(run.Portal()), static_cast<double>(run.GetCalculator()->StepsTaken())};
}

ThreeVector PlaceOf(const SystemState& state, int64 id) {
    for (std::size_t i = 0; i < state.CountBodies(); i++)
        if (state.ids[i] == id) return state.Position(i);
    return {};
}

// Of the second body about the first, which starts at its periapsis on the x axis, as far as the
// numbers of the start say; against the semi-major axis.
double OrbitError(const PointSystem& pair, const SystemState& state) {
    const Real r = Real(pair[1].position.x) - pair[0].position.x;
    const Real v = Real(pair[1].velocity.y) - pair[0].velocity.y;
    const Real gm = Real(pair[0].gm) + pair[1].gm;
    const Real a = 1 / (2 / r - v * v / gm);
    const Real e = 1 - r / a;
    const Real turn = 2 * std::numbers::pi_v<Real>;
    const Real mean = std::fmod(std::sqrt(gm / (a * a * a)) * Real(state.time), turn);
    Real low = 0;
    Real high = turn;
    for (int i = 0; i < 80; i++) {
        const Real middle = (low + high) / 2;
        (middle - e * std::sin(middle) < mean ? low : high) = middle;
    }
    const ThreeVector place = PlaceOf(state, 1) - PlaceOf(state, 0);
    const Real x = a * (std::cos(low) - e);
    const Real y = a * std::sqrt(1 - e * e) * std::sin(low);
    return static_cast<double>(std::hypot(place.x - x, place.y - y) / a);
}

// Against the size of the system.
double ErrorAgainst(const PointSystem& reference, const SystemState& state) {
    double error = 0.0;
    double size = 0.0;
    for (std::size_t i = 0; i < reference.size(); i++) {
        const ThreeVector off = PlaceOf(state, static_cast<int64>(i)) - reference[i].position;
        const ThreeVector& place = reference[i].position;
        error = std::max(error, std::hypot(off.x, off.y, off.z));
        size = std::max(size, std::hypot(place.x, place.y, place.z));
    }
    return error / size;
}

// The error falls as this power of the length of a step, over a run. Orders 2 and 3 are as they
// have always been, and know no such law.
void BenchLaw(BenchTable* table) {
    const PointSystem pair = KeplerPair(0.5);
    for (const auto& [order, cutoff] : {std::pair{2, 2e-5}, std::pair{3, 1e-8}})
        table->AddFigure(
            "order " + std::to_string(order) + ", e = 0.5, ten orbits: error of the place",
            OrbitError(pair, RunOf(pair, order, cutoff, kOrbits * kOrbitTime).state), "");
    const Result coarse = RunOf(pair, 4, 1e-7, kOrbits * kOrbitTime);
    const Result fine = RunOf(pair, 4, 1e-10, kOrbits * kOrbitTime);
    const double errors = OrbitError(pair, coarse.state) / OrbitError(pair, fine.state);
    const double exponent = std::log(errors) / std::log(fine.steps / coarse.steps);
    table->AddAtLeast("order 4: exponent of the step in the error", 2.5, exponent, "");
}

void BenchOrbits(BenchTable* table) {
    for (const double eccentricity : {0.0, 0.5, 0.9, 0.99}) {
        const PointSystem pair = KeplerPair(eccentricity);
        for (const auto& [order, cutoff] :
             {std::pair{4, 1e-11}, std::pair{16, 1e-10}, std::pair{16, 1e-16}}) {
            const Result result = RunOf(pair, order, cutoff, kOrbits * kOrbitTime);
            char name[80];
            std::snprintf(name, sizeof name, "e = %g, ten orbits, order %d, %g: ", eccentricity,
                          order, cutoff);
            table->AddFigure(name + std::string("steps"), result.steps, "");
            table->AddFigure(name + std::string("error of the place"),
                             OrbitError(pair, result.state), "");
        }
    }
}

void BenchReferences(BenchTable* table) {
    const double time = 0.9 * kYear;
    table->AddAtMost("figure eight, 0.9 years, order 16: error of the place", 1e-13,
                     ErrorAgainst(Reference(FigureEight(), time, 600),
                                  RunOf(FigureEight(), 16, 1e-16, time).state),
                     "");
    const double centuries = 500 * kYear;
    table->AddAtMost("outer planets, 500 years, order 16: error of the place", 1e-12,
                     ErrorAgainst(Reference(OuterPlanets(), centuries, 2500),
                                  RunOf(OuterPlanets(), 16, 1e-16, centuries).state),
                     "");
}

}  // namespace

void BenchAccuracy(BenchTable* table) {
    BenchLaw(table);
    BenchOrbits(table);
    BenchReferences(table);
}
