#include "Exchange/PlummerSphere.h"

#include <cmath>

#include "Exchange/SeededRandom.h"

namespace {

double Square(const ThreeVector& v) {
    return Dot(v, v);
}

}  // namespace

std::vector<PlummerStar> PlummerSphere(int count, double totalMass, double length,
                                       std::uint64_t seed) {
    SeededRandom random(seed);
    std::vector<PlummerStar> stars;
    stars.reserve(static_cast<std::size_t>(count));
    while (stars.size() < static_cast<std::size_t>(count)) {
        // The share of the mass within r is u^3 with u2 = r2 / (r2 + a2), and so is the share of
        // the unit ball within u: a point of the ball becomes one of the sphere when it is pushed
        // outward.
        const ThreeVector place = random.InBall();
        const double u2 = Square(place);
        if (u2 > 0.99) continue;
        const double outward = length / std::sqrt(1.0 - u2);

        // Speeds as parts q of the escape speed are spread as q2 (1 - q2)^(7/2): a point of the
        // ball brings the q2, refusing some of them the rest.
        ThreeVector part;
        double q2 = 0.0;
        double bound = 0.0;
        do {
            part = random.InBall();
            q2 = Square(part);
            bound = (1.0 - q2) * (1.0 - q2) * (1.0 - q2) * std::sqrt(1.0 - q2);
        } while (random.Uniform() >= bound);
        // v2 = 2 GM / sqrt(r2 + a2), and r2 + a2 is the square of `outward`.
        const double escape = std::sqrt(2.0 * totalMass / outward);
        stars.push_back({outward * place, escape * part});
    }
    return stars;
}
