// The Taylor integrator in plain scalar code, coordinate by coordinate, with everything of a body
// in one place and with the forces of the plain pair walk: what TaylorCalculator must do bit for
// bit. The benchmarks compare TaylorCalculator with it.
#pragma once

#include <vector>

#include "Tests/Calculation/PairWalk.h"

class ScalarTaylor {
public:
    ScalarTaylor(PairWalk system, int32 order, double cutoff);

    void Step();

    const PairWalk& System() const { return system_; }
    double Time() const { return elapsed_; }
    int32 CountPromotions() const { return promotions_; }

private:
    struct Dels {
        double r[3][5];
        double v[3][4];
    };

    void ControlStep();
    void TaylorSeries();
    void Promote();

    PairWalk system_;
    const int32 order_;
    std::vector<Dels> dels_;
    double low_, high_;
    int32 promotionInterval_;
    double s_ = 100.0, s2_ = 10000.0;
    double h_, h2_, h3_, h4_;
    int32 iteration_ = 0;
    int32 promotions_ = 0;
    double elapsed_ = 0.0;
};
