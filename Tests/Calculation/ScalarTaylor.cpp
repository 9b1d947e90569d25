#include "Tests/Calculation/ScalarTaylor.h"

#include <cmath>

ScalarTaylor::ScalarTaylor(PairWalk system, int32 order, double cutoff)
    : system_(std::move(system)), order_(order) {
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
}

void ScalarTaylor::Step() {
    system_.Evaluate(order_);
    ControlStep();
    iteration_++;
    TaylorSeries();
    if (iteration_ > promotionInterval_) {
        Promote();
        iteration_ = 0;
    }
    elapsed_ += h_;
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
