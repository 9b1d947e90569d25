#include "ScalarTaylor.h"

#include <cmath>

namespace {

// A symmetric tensor times a vector.
void Apply(const double (&t)[6], const double (&u)[3], double (&result)[3]) {
    result[0] = t[0] * u[0] + t[1] * u[1] + t[2] * u[2];
    result[1] = t[1] * u[0] + t[3] * u[1] + t[4] * u[2];
    result[2] = t[2] * u[0] + t[4] * u[1] + t[5] * u[2];
}

}  // namespace

ScalarTaylor::ScalarTaylor(PairWalk system, int32 order, double cutoff, Forces forces)
    : system_(std::move(system)), order_(order), forces_(forces) {
    const double x = std::pow(cutoff, -1.0 / (order - 1));
    low_ = x * 0.749894209334325;
    low_ *= low_;
    high_ = x * 1.33352143216;
    high_ *= high_;
    promotionInterval_ = static_cast<int32>(std::pow(x, 0.6666666666666666) * 4.281);
    h_ = 0.01;
    h2_ = h_ * 0.5 * h_;
    h3_ = h2_ * 0.3333333333333333 * h_;
    h4_ = h3_ * 0.25 * h_;
    for (const PairWalk::Body& body : system_.bodies) {
        Dels dels{};
        for (int k = 0; k < 3; k++) {
            dels.r[k][0] = body.position[k];
            dels.v[k][0] = body.velocity[k];
        }
        dels_.push_back(dels);
    }
    for (int32 i = 0; i < system_.massive; i++) {
        for (size_t j = static_cast<size_t>(i) + 1; j < system_.bodies.size(); j++) {
            const double reach = system_.bodies[i].radius + system_.bodies[j].radius;
            pairs_.push_back({{}, reach * reach});
        }
    }
}

void ScalarTaylor::Step() {
    Derivatives();
    ControlStep();
    iteration_++;
    TaylorSeries();
    if (iteration_ > promotionInterval_) {
        Promote();
        iteration_ = 0;
    }
    elapsed_ += h_;
}

void ScalarTaylor::Derivatives() {
    if (forces_ == Forces::kWalk)
        system_.Evaluate(order_);
    else
        DerivativesFromTensors();
}

void ScalarTaylor::DerivativesFromTensors() {
    auto& bodies = system_.bodies;
    const auto count = static_cast<int32>(bodies.size());
    for (PairWalk::Body& body : bodies)
        for (int k = 0; k < 3; k++)
            body.acceleration[k] = body.jerk[k] = body.snap[k] = 0.0;
    system_.rate = 1e-100;
    Pair* pair = pairs_.data() + pairs_.size();
    for (int32 i = system_.massive - 1; i >= 0; i--) {
        for (int32 j = count - 1; j > i; j--) {
            pair--;
            PairWalk::Body& a = bodies[i];
            PairWalk::Body& b = bodies[j];
            const bool massiveToo = j < system_.massive;
            double d[3], w[3];
            for (int k = 0; k < 3; k++) {
                d[k] = a.position[k] - b.position[k];
                w[k] = a.velocity[k] - b.velocity[k];
            }
            const double r2 = d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
            const double w2 = w[0] * w[0] + w[1] * w[1] + w[2] * w[2];
            const double dw = d[0] * w[0] + d[1] * w[1] + d[2] * w[2];
            const double q = 1.0 / std::sqrt(r2);
            const double q2 = q * q, q3 = q2 * q, q5 = q3 * q2, q7 = q5 * q2;
            double(&t)[6] = pair->tensor;
            t[0] = q3 - 3.0 * d[0] * d[0] * q5;
            t[1] = -3.0 * d[0] * d[1] * q5;
            t[2] = -3.0 * d[0] * d[2] * q5;
            t[3] = q3 - 3.0 * d[1] * d[1] * q5;
            t[4] = -3.0 * d[1] * d[2] * q5;
            t[5] = q3 - 3.0 * d[2] * d[2] * q5;
            double jerk[3];
            Apply(t, w, jerk);
            for (int k = 0; k < 3; k++) {
                const double snap =
                    -6.0 * dw * w[k] * q5 - 3.0 * w2 * d[k] * q5 + 15.0 * dw * dw * d[k] * q7;
                b.acceleration[k] += a.gm * d[k] * q3;
                b.jerk[k] += a.gm * jerk[k];
                b.snap[k] += a.gm * snap;
                if (!massiveToo) continue;
                a.acceleration[k] -= b.gm * d[k] * q3;
                a.jerk[k] -= b.gm * jerk[k];
                a.snap[k] -= b.gm * snap;
            }
            const double fall = (massiveToo ? a.gm + b.gm : a.gm) * q3;
            system_.rate = std::fmax(system_.rate, std::fmax(w2 * q2, fall));
        }
    }
    pair = pairs_.data() + pairs_.size();
    for (int32 i = system_.massive - 1; i >= 0; i--) {
        for (int32 j = count - 1; j > i; j--) {
            pair--;
            PairWalk::Body& a = bodies[i];
            PairWalk::Body& b = bodies[j];
            double da[3], snap[3];
            for (int k = 0; k < 3; k++)
                da[k] = a.acceleration[k] - b.acceleration[k];
            Apply(pair->tensor, da, snap);
            for (int k = 0; k < 3; k++) {
                b.snap[k] += a.gm * snap[k];
                if (j < system_.massive) a.snap[k] -= b.gm * snap[k];
            }
        }
    }
}

void ScalarTaylor::ControlStep() {
    const double lo = low_ * system_.rate;
    const double hi = high_ * system_.rate;
    if (lo > s2_) {
        do {
            s_ *= 1.33352143216;
            s2_ = s_ * s_;
        } while (!(s2_ >= lo));
    } else if (hi < s2_) {
        do {
            s_ *= 0.749894209334325;
            s2_ = s_ * s_;
        } while (!(s2_ <= hi));
    } else {
        return;
    }
    h_ = 1.0 / s_;
    h2_ = h_ * 0.5 * h_;
    h3_ = h2_ * 0.3333333333333333 * h_;
    h4_ = h3_ * 0.25 * h_;
}

void ScalarTaylor::TaylorSeries() {
    double sr = 0.0, sv = 0.0;
    for (size_t i = 0; i < dels_.size(); i++) {
        PairWalk::Body& body = system_.bodies[i];
        for (int k = 2; k >= 0; k--) {
            double(&r)[5] = dels_[i].r[k];
            double(&v)[4] = dels_[i].v[k];
            if (order_ >= 4) {
                r[4] += body.snap[k] * h4_;
                v[3] += body.snap[k] * h3_;
                sr = r[4];
                sv = v[3];
            }
            if (order_ >= 3) {
                r[3] += body.jerk[k] * h3_;
                v[2] += body.jerk[k] * h2_;
                sr += r[3];
                sv += v[2];
            }
            r[2] += body.acceleration[k] * h2_;
            v[1] += body.acceleration[k] * h_;
            sv = (sv + v[1]) + v[0];
            r[1] += body.velocity[k] * h_;
            sr = ((sr + r[2]) + r[1]) + r[0];
            body.velocity[k] = sv;
            body.position[k] = sr;
        }
    }
}

void ScalarTaylor::Promote() {
    promotions_++;
    for (Dels& dels : dels_) {
        for (int k = 0; k < 3; k++) {
            double(&r)[5] = dels.r[k];
            double(&v)[4] = dels.v[k];
            r[0] += r[1];
            v[0] += v[1];
            r[1] = order_ > 1 ? r[2] : 0.0;
            v[1] = order_ > 1 ? v[2] : 0.0;
            r[2] = order_ > 2 ? r[3] : 0.0;
            v[2] = order_ > 2 ? v[3] : 0.0;
            r[3] = order_ == 4 ? r[4] : 0.0;
            r[4] = v[3] = 0.0;
        }
    }
}

void ScalarTaylor::Report() {
    times_.push_back(elapsed_);
    for (const PairWalk::Body& body : system_.bodies) {
        for (int k = 0; k < 3; k++) {
            positions_.push_back(body.position[k]);
            velocities_.push_back(body.velocity[k]);
        }
    }
}

void ScalarTaylor::ClearReports() {
    times_.clear();
    positions_.clear();
    velocities_.clear();
}
