#include "Calculation/Series/PathCuts.h"

#include <cmath>

#include "Calculation/Series/Bernstein.h"
#include "Calculation/Series/PairPath.h"

namespace {

// `shares` of the way from the step's begin to `to`.
std::vector<double> CutsAt(const std::vector<double>& shares, double from, double to) {
    std::vector<double> cuts = {from};
    for (const double share : shares)
        if (share * to > from && share * to < to) cuts.push_back(share * to);
    cuts.push_back(to);
    return cuts;
}

}  // namespace

std::vector<double> CutsBetweenTurns(const SeriesStep& step, int32 body, int32 other, double from,
                                     double to) {
    const SeriesStore& store = step.Store();
    std::vector<double> shares;
    PairPath(store, store.SlotOf(body), store.SlotOf(other), to).FindTurns(&shares);
    return CutsAt(shares, from, to);
}

std::vector<double> CutsBetweenCrossings(const SeriesStep& step, int32 body, double from,
                                         double to) {
    constexpr int32 kAxis = 2;
    const SeriesArrays& arrays = step.Store().Arrays();
    const int32 slot = step.Store().SlotOf(body);
    const double* const rows = arrays.Vector(slot / kSlots) + slot % kSlots;
    const int32 degree = arrays.order + 1;
    Bernstein::Coefficients heights{};
    double power = 1.0;
    double moved = 0.0;
    for (int32 k = 0; k <= degree; k++, power *= to) {
        double& height = heights[static_cast<std::size_t>(k)];
        height = rows[(3 * k + kAxis) * kSlots] * power;
        if (k > 0) moved += std::fabs(height);
    }
    std::vector<double> shares;
    // Most are nowhere near.
    if (std::fabs(heights[0]) < moved) SeparateRoots(Bernstein(degree, heights), &shares);
    return CutsAt(shares, from, to);
}
