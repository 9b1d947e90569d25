#include "Tests/Calculation/PairWalk.h"

#include <cmath>

namespace {

double Dot(const double (&a)[3], const double (&b)[3]) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void Subtract(const double (&a)[3], const double (&b)[3], double (&difference)[3]) {
    for (int k = 0; k < 3; k++)
        difference[k] = a[k] - b[k];
}

}  // namespace

void PairWalk::Evaluate(int32 order) {
    FirstPass(order);
    if (order >= 4 && collisions.empty()) SecondPass();
}

void PairWalk::FirstPass(int32 order) {
    rate = 1e-100;
    collisions.clear();
    for (Body& body : bodies)
        for (int k = 0; k < 3; k++)
            body.acceleration[k] = body.jerk[k] = body.snap[k] = 0;

    const auto count = static_cast<int32>(bodies.size());
    for (int32 i = massive - 1; i >= 0; i--) {
        Body p = bodies[i];
        for (int32 j = count - 1; j > i; j--) {
            Body& s = bodies[j];
            const bool massiveToo = j < massive;
            double d[3], w[3];
            Subtract(p.position, s.position, d);
            Subtract(p.velocity, s.velocity, w);
            const double r2 = Dot(d, d);
            const double reach = p.radius + s.radius;
            if (!(r2 > reach * reach)) {
                collisions.push_back({j, i});
                continue;
            }
            const double q = 1 / std::sqrt(r2);
            const double q2 = q * q;
            const double q3 = q2 * q;
            const double toLater = p.gm * q3;
            const double toEarlier = s.gm * q3;
            for (int k = 0; k < 3; k++) {
                s.acceleration[k] += toLater * d[k];
                if (massiveToo) p.acceleration[k] -= toEarlier * d[k];
            }
            const double w2 = Dot(w, w);
            const double flyby = w2 * q2;
            const double fall = (massiveToo ? p.gm + s.gm : p.gm) * q3;
            if (flyby > rate) rate = flyby;
            if (fall > rate) rate = fall;
            if (order < 3) continue;
            const double dw = Dot(d, w);
            const double e = 3 * dw * q2;
            for (int k = 0; k < 3; k++) {
                const double jerk = w[k] - e * d[k];
                s.jerk[k] += toLater * jerk;
                if (massiveToo) p.jerk[k] -= toEarlier * jerk;
            }
            if (order < 4) continue;
            const double c = (5 * dw * e - 3 * w2) * q2;
            for (int k = 0; k < 3; k++) {
                const double snap = c * d[k] - 2 * e * w[k];
                s.snap[k] += toLater * snap;
                if (massiveToo) p.snap[k] -= toEarlier * snap;
            }
        }
        bodies[i] = p;
    }
}

void PairWalk::SecondPass() {
    const auto count = static_cast<int32>(bodies.size());
    for (int32 i = massive - 1; i >= 0; i--) {
        Body p = bodies[i];
        for (int32 j = count - 1; j > i; j--) {
            Body& s = bodies[j];
            double d[3], da[3];
            Subtract(p.position, s.position, d);
            Subtract(p.acceleration, s.acceleration, da);
            const double q = 1 / std::sqrt(Dot(d, d));
            const double q2 = q * q;
            const double q3 = q2 * q;
            const double e = 3 * Dot(d, da) * q2;
            for (int k = 0; k < 3; k++) {
                const double snap = da[k] - e * d[k];
                s.snap[k] += p.gm * q3 * snap;
                if (j < massive) p.snap[k] -= s.gm * q3 * snap;
            }
        }
        bodies[i] = p;
    }
}

void PairWalk::CopyTo(ForceEvaluator* evaluator) const {
    evaluator->Resize(static_cast<int32>(bodies.size()), massive);
    for (size_t i = 0; i < bodies.size(); i++) {
        for (int k = 0; k < 3; k++) {
            evaluator->Position(k)[i] = bodies[i].position[k];
            evaluator->Velocity(k)[i] = bodies[i].velocity[k];
        }
        evaluator->GM()[i] = bodies[i].gm;
        evaluator->Radius()[i] = bodies[i].radius;
    }
}
