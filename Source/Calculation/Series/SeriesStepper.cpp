#include "Calculation/Series/SeriesStepper.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Calculation/Series/SeriesNumbers.h"

namespace {

// A step may be expected to be so much longer than the last one, and is no longer than that where
// bodies were given up at lower orders.
constexpr double kExpectedGrowth = 1.125;
constexpr double kMaxGrowth = 1.25;
// In scales: what only tiny numbers would exceed.
constexpr double kMaxStep = 1024.0;
// Bodies are given up at the order whose terms are this much below the tolerance.
constexpr double kCutoff = 0.125;
constexpr int32 kMaxExponent = 400;

void SetRows(double* rows, int32 slot, const ThreeVector& position, const ThreeVector& velocity) {
    const double numbers[] = {position.x, position.y, position.z,
                              velocity.x, velocity.y, velocity.z};
    for (int32 row = 0; row < SplitStates::kRows; row++)
        rows[SplitStates::Index(slot, row)] = numbers[row];
}

}  // namespace

SeriesStepper::SeriesStepper(int32 threads) : forces_(threads), step_(store_) {}

void SeriesStepper::Resize(int32 order, int32 bodies, int32 massive) {
    store_.Resize(SeriesForces::OrderFor(order, massive), bodies, massive);
    begin_.Resize(bodies, massive);
    end_.Resize(bodies, massive);
    hasStep_ = false;
}

void SeriesStepper::SetBody(int32 body, const ThreeVector& position, const ThreeVector& velocity,
                            double gm) {
    const int32 slot = begin_.SlotOf(body);
    SetRows(begin_.High(), slot, position, velocity);
    SetRows(begin_.Low(), slot, {}, {});
    if (body < CountMassive()) store_.SetGM(body, gm);
}

void SeriesStepper::SetLow(int32 body, const ThreeVector& position, const ThreeVector& velocity) {
    SetRows(begin_.Low(), begin_.SlotOf(body), position, velocity);
}

void SeriesStepper::Start(double tolerance, double time, bool backwards) {
    Resume(tolerance, {{time, 0.0}, backwards ? -0.0 : 0.0, 0.0});
}

bool SeriesStepper::ChooseScale(const StopFlags& stop) {
    const std::optional<double> rate = FastestRate(stop);
    if (!rate) return false;
    // Without a rate the first series tells what is the matter.
    int32 exponent = 0;
    if (*rate > 0.0 && std::isfinite(*rate))
        exponent = std::clamp(ExponentAbove(1.0 / std::sqrt(*rate)), -kMaxExponent, kMaxExponent);
    place_.scale = std::copysign(PowerOfTwo(exponent), place_.scale);
    return true;
}

void SeriesStepper::Resume(double tolerance, const SeriesPlace& place) {
    place_ = place;
    cutoff_ = tolerance * kCutoff;
    logTolerance_ = Log2(tolerance);
    FillEmptySlots();
    forces_.Resize(store_);
    hasStep_ = false;
}

// A ring is repeated. In tiles nothing may be where another is: far out, and without a pull.
// Massless bodies do not see each other.
void SeriesStepper::FillEmptySlots() {
    const auto copy = [&](int32 from, int32 slot) {
        for (double* const rows : {begin_.High(), begin_.Low()})
            for (int32 row = 0; row < SplitStates::kRows; row++)
                rows[SplitStates::Index(slot, row)] = rows[SplitStates::Index(from, row)];
    };
    const int32 massive = CountMassive();
    const int32 slots = store_.Arrays().massiveVectors * kSlots;
    double size = 1.0;
    for (int32 body = 0; body < massive; body++)
        for (int32 row = 0; row < 3; row++)
            size = std::max(size, std::fabs(begin_.High()[SplitStates::Index(body, row)]));
    for (int32 slot = massive; slot < slots; slot++) {
        copy(slot % massive, slot);
        if (massive > kMaxInRing)
            for (int32 row = 0; row < SplitStates::kRows; row++)
                begin_.High()[SplitStates::Index(slot, row)] =
                    row == 0 ? 1000.0 * size * (slot - massive + 1) : 0.0;
    }
    if (CountBodies() == massive) return;
    const int32 last = begin_.SlotOf(CountBodies() - 1);
    for (int32 slot = last + 1; slot < begin_.CountVectors() * kSlots; slot++)
        copy(last, slot);
}

void SeriesStepper::BeginNext() {
    if (!hasStep_) return;
    hasStep_ = false;
    std::swap(begin_, end_);
    const double length = step_.Length();
    place_.time = step_.End();
    place_.length = length;
    place_.scale = std::copysign(PowerOfTwo(ExponentAbove(std::fabs(length))), length);
}

SeriesStepper::Result SeriesStepper::MakeStep(const StopFlags& stop) {
    BeginNext();
    if (place_.scale == 0.0 && !ChooseScale(stop)) return Result::kStopped;
    store_.SetScale(place_.scale);
    const double last = std::fabs(place_.length / place_.scale);
    const double expected = std::min(1.0, kExpectedGrowth * last);
    if (!forces_.Make(&store_, begin_, expected, last > 0.0 ? cutoff_ : 0.0, stop))
        return Result::kStopped;
    const SeriesInstance& kernels = forces_.Instance();
    const SeriesEnd end = kernels.end(store_.Arrays());
    if (!end.isFinite) return Result::kNotFinite;
    if (end.isStraight) return Result::kNothingPulls;
    double theta = StepLength(end);
    if (forces_.HasLeftOut()) theta = std::min(theta, kMaxGrowth * last);
    step_.Set(place_.time, theta, 1);
    if (!(step_.End().high != place_.time.high)) return Result::kTimeStands;
    if (!std::isfinite(step_.End().high) || !store_.Evaluate(kernels, theta, &end_))
        return Result::kNotFinite;
    step_.Set(place_.time, theta, PartsForBend(kernels.bend(store_.Arrays(), theta)));
    hasStep_ = true;
    return Result::kDone;
}

double SeriesStepper::StepLength(const SeriesEnd& end) const {
    double exponent = Log2(kMaxStep);
    if (end.lastButOne > 0.0)
        exponent = std::min(exponent, (logTolerance_ - 0.5 * Log2(end.lastButOne)) / (Order() - 2));
    if (end.last > 0.0)
        exponent = std::min(exponent, (logTolerance_ - 0.5 * Log2(end.last)) / (Order() - 1));
    return Exp2(exponent);
}

// What is no number counts as the greatest.
std::optional<double> SeriesStepper::FastestRate(const StopFlags& stop) const {
    double greatest = 0.0;
    for (int32 earlier = 0; earlier < CountMassive(); earlier++) {
        if (stop.ShouldStop()) return std::nullopt;
        for (int32 later = earlier + 1; later < CountBodies(); later++) {
            const double rate = RateOf(later, earlier);
            if (std::isnan(rate)) return HUGE_VAL;
            greatest = std::max(greatest, rate);
        }
    }
    return greatest;
}

double SeriesStepper::RateOf(int32 later, int32 earlier) const {
    const int32 a = begin_.SlotOf(later);
    const int32 b = begin_.SlotOf(earlier);
    double squares[2] = {};
    for (int32 row = 0; row < SplitStates::kRows; row++) {
        const double d =
            (begin_.High()[SplitStates::Index(a, row)] -
             begin_.High()[SplitStates::Index(b, row)]) +
            (begin_.Low()[SplitStates::Index(a, row)] - begin_.Low()[SplitStates::Index(b, row)]);
        squares[row / 3] += d * d;
    }
    const double pull = (GM(later) + GM(earlier)) / (squares[0] * std::sqrt(squares[0]));
    const double turn = squares[1] / squares[0];
    return turn <= pull ? pull : turn;
}
