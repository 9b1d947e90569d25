#include "Tests/Calculation/Series/SeriesFixtures.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace {

#ifdef __SIZEOF_FLOAT128__
__extension__ using Wide = __float128;
#else
using Wide = long double;
#endif

// From the double's root, each step doubles the digits.
Wide Root(Wide square) {
    Wide root = std::sqrt(static_cast<double>(square));
    for (int i = 0; i < 2; i++)
        root = (root + square / root) / 2;
    return root;
}

struct WideBody {
    Wide position[3];
    Wide velocity[3];
};

// One step of the plain recurrences, all bodies on all bodies.
class WideTaylor {
public:
    explicit WideTaylor(const PointSystem& system) : system_(system) {
        for (const PointBody& body : system)
            bodies_.push_back({{body.position.x, body.position.y, body.position.z},
                               {body.velocity.x, body.velocity.y, body.velocity.z}});
        const std::size_t pairs = system.size() * system.size();
        x_.resize(system.size());
        d_.resize(pairs);
        s_.resize(pairs);
        q_.resize(pairs);
    }

    void Step(Wide h) {
        for (std::size_t i = 0; i < bodies_.size(); i++)
            for (int axis = 0; axis < 3; axis++) {
                x_[i].at[0][axis] = bodies_[i].position[axis];
                x_[i].at[1][axis] = bodies_[i].velocity[axis];
            }
        for (int k = 0; k + 2 <= kOrder; k++)
            NextOrder(k);
        for (std::size_t i = 0; i < bodies_.size(); i++)
            for (int axis = 0; axis < 3; axis++) {
                Wide r = 0;
                Wide v = 0;
                for (int k = kOrder; k >= 0; k--) {
                    r = r * h + x_[i].at[k][axis];
                    if (k > 0) v = v * h + x_[i].at[k][axis] * k;
                }
                bodies_[i].position[axis] = r;
                bodies_[i].velocity[axis] = v;
            }
    }

    PointSystem State() const {
        PointSystem state = system_;
        for (std::size_t i = 0; i < bodies_.size(); i++) {
            const auto to = [](const Wide(&numbers)[3]) {
                return ThreeVector{static_cast<double>(numbers[0]), static_cast<double>(numbers[1]),
                                   static_cast<double>(numbers[2])};
            };
            state[i].position = to(bodies_[i].position);
            state[i].velocity = to(bodies_[i].velocity);
        }
        return state;
    }

private:
    static constexpr int kOrder = 26;
    struct Series {
        Wide at[kOrder + 1][3];
    };
    struct Scalars {
        Wide at[kOrder + 1];
    };

    void NextOrder(int k) {
        for (std::size_t i = 0; i < bodies_.size(); i++) {
            Wide sum[3] = {};
            for (std::size_t j = 0; j < bodies_.size(); j++)
                if (j != i && system_[j].gm > 0) AddPair(i, j, k, sum);
            for (int axis = 0; axis < 3; axis++)
                x_[i].at[k + 2][axis] = sum[axis] / ((k + 1) * (k + 2));
        }
    }

    void AddPair(std::size_t i, std::size_t j, int k, Wide (&sum)[3]) {
        const std::size_t pair = i * bodies_.size() + j;
        auto& d = d_[pair].at;
        auto& s = s_[pair].at;
        auto& q = q_[pair].at;
        s[k] = 0;
        for (int axis = 0; axis < 3; axis++)
            d[k][axis] = x_[j].at[k][axis] - x_[i].at[k][axis];
        for (int m = 0; m <= k; m++)
            for (int axis = 0; axis < 3; axis++)
                s[k] += d[m][axis] * d[k - m][axis];
        if (k == 0) {
            q[0] = 1 / (s[0] * Root(s[0]));
        } else {
            q[k] = 0;
            for (int m = 0; m < k; m++)
                q[k] -= (3 * (k - m) + 2 * m) * s[k - m] * q[m];
            q[k] /= 2 * k * s[0];
        }
        for (int m = 0; m <= k; m++)
            for (int axis = 0; axis < 3; axis++)
                sum[axis] += system_[j].gm * q[m] * d[k - m][axis];
    }

    const PointSystem& system_;
    std::vector<WideBody> bodies_;
    std::vector<Series> x_;
    std::vector<Series> d_;
    std::vector<Scalars> s_;
    std::vector<Scalars> q_;
};

double Size(const ThreeVector& v) {
    return std::hypot(v.x, v.y, v.z);
}

ThreeVector DirectAcceleration(const PointSystem& system, std::size_t of) {
    ThreeVector sum;
    for (std::size_t i = 0; i < system.size(); i++) {
        if (i == of || !(system[i].gm > 0.0)) continue;
        const ThreeVector d = system[i].position - system[of].position;
        const double r = Size(d);
        sum += d * (system[i].gm / (r * r * r));
    }
    return sum;
}

}  // namespace

PointSystem FigureEight() {
    const double length = kAstronomicalUnit;
    const double speed = std::sqrt(kSolarGM / length);
    const ThreeVector r{0.97000436 * length, -0.24308753 * length, 0.0};
    const ThreeVector v{0.466203685 * speed, 0.43236573 * speed, 0.0};
    return {{r, v, kSolarGM}, {-r, v, kSolarGM}, {{}, v * -2.0, kSolarGM}};
}

PointSystem KeplerPair(double eccentricity) {
    const double near = kAstronomicalUnit * (1.0 - eccentricity);
    const double speed =
        std::sqrt(kSolarGM / kAstronomicalUnit * (1.0 + eccentricity) / (1.0 - eccentricity));
    const double share = 0.25;
    return {{{-share * near, 0, 0}, {0, -share * speed, 0}, kSolarGM * (1.0 - share)},
            {{(1.0 - share) * near, 0, 0}, {0, (1.0 - share) * speed, 0}, kSolarGM * share}};
}

// Masses of the Sun with the inner planets, AU, AU per day.
PointSystem OuterPlanets() {
    constexpr double kSpeed = kAstronomicalUnit / 86400.0;
    constexpr double kSunGM = 2.95912208286e-4 * kAstronomicalUnit * kSpeed * kSpeed;
    PointSystem system{
        {{0, 0, 0}, {0, 0, 0}, 1.00000597682},
        {{-3.5023653, -3.8169847, -1.5507963},
         {0.00565429, -0.00412490, -0.00190589},
         0.000954786104043},
        {{9.0755314, -3.0458353, -1.6483708},
         {0.00168318, 0.00483525, 0.00192462},
         0.000285583733151},
        {{8.3101420, -16.2901086, -7.2521278},
         {0.00354178, 0.00137102, 0.00055029},
         0.0000437273164546},
        {{11.4707666, -25.7294829, -10.8169456},
         {0.00288930, 0.00114527, 0.00039677},
         0.0000517759138449},
        {{-15.5387357, -25.2225594, -3.1902382},
         {0.00276725, -0.00170702, -0.00136504},
         1.0 / 1.3e8},
    };
    for (auto& [position, velocity, gm] : system) {
        position *= kAstronomicalUnit;
        velocity *= kSpeed;
        gm *= kSunGM;
    }
    return system;
}

PointSystem Planets(int32 count) {
    PointSystem system{{{}, {}, kSolarGM}};
    for (int32 i = 0; i < count; i++) {
        const double r = kAstronomicalUnit * (1.0 + 0.7 * i);
        const double v = std::sqrt(kSolarGM / r);
        const double a = 2.4 * i;
        system.push_back({{r * std::cos(a), r * std::sin(a), 0.01 * i * r},
                          {-v * std::sin(a), v * std::cos(a), 0.02 * v},
                          1e-4 * kSolarGM / (1.0 + i)});
    }
    return system;
}

PointSystem Cluster(int32 count, int32 massive) {
    std::mt19937 random(17);
    const auto unit = [&random] { return 2.0 * random() / 4294967296.0 - 1.0; };
    PointSystem system;
    for (int32 i = 0; i < count; i++) {
        PointBody body;
        body.position = ThreeVector{unit(), unit(), unit()} * (20.0 * kAstronomicalUnit);
        body.velocity = ThreeVector{unit(), unit(), unit()} * 5e3;
        body.gm = i < massive ? kSolarGM * (1.5 + unit()) / massive : 0.0;
        system.push_back(body);
    }
    return system;
}

void Load(const PointSystem& system, SeriesStepper* stepper, int32 order) {
    const auto massive =
        std::count_if(system.begin(), system.end(), [](const PointBody& b) { return b.gm > 0; });
    stepper->Resize(order, static_cast<int32>(system.size()), static_cast<int32>(massive));
    for (std::size_t i = 0; i < system.size(); i++)
        stepper->SetBody(static_cast<int32>(i), system[i].position, system[i].velocity,
                         system[i].gm);
}

PointSystem StateAt(SeriesStepper* stepper, double theta) {
    SplitStates states;
    states.Resize(stepper->CountBodies(), stepper->CountMassive());
    stepper->Evaluate(theta, &states);
    PointSystem system;
    for (int32 i = 0; i < stepper->CountBodies(); i++) {
        const int32 slot = states.SlotOf(i);
        const auto at = [&](int32 row) { return states.High()[SplitStates::Index(slot, row)]; };
        system.push_back({{at(0), at(1), at(2)}, {at(3), at(4), at(5)}, stepper->GM(i)});
    }
    return system;
}

PointSystem RunTo(SeriesStepper* stepper, double time) {
    StopFlags stop;
    stop.pauseCount = 0;
    do {
        if (stepper->MakeStep(stop) != SeriesStepper::Result::kDone) return {};
    } while (stepper->Step().ThetaAt(time) > stepper->Step().Theta());
    return StateAt(stepper, stepper->Step().ThetaAt(time));
}

PointSystem Reference(const PointSystem& system, double time, int32 steps) {
    WideTaylor taylor(system);
    for (int32 i = 0; i < steps; i++)
        taylor.Step(static_cast<Wide>(time) / steps);
    return taylor.State();
}

double PositionError(const PointSystem& a, const PointSystem& b) {
    if (a.size() != b.size()) return HUGE_VAL;
    double size = 0.0;
    double error = 0.0;
    for (std::size_t i = 0; i < a.size(); i++) {
        size = std::max(size, Size(b[i].position));
        error = std::max(error, Size(a[i].position - b[i].position));
    }
    return error / size;
}

double ForceError(SeriesStepper* stepper, double theta) {
    const PointSystem state = StateAt(stepper, theta);
    double error = 0.0;
    for (std::size_t i = 0; i < state.size(); i++) {
        const ThreeVector force = DirectAcceleration(state, i);
        const auto motion = stepper->Step().BodyAt(static_cast<int32>(i), theta);
        if (motion.position != state[i].position || motion.velocity != state[i].velocity)
            return HUGE_VAL;
        error = std::max(error, Size(motion.acceleration - force) / Size(force));
    }
    return error;
}
