#include "Calculation/Series/Bernstein.h"

namespace {

using Coefficients = Bernstein::Coefficients;
using Binomials = std::array<Coefficients, Bernstein::kMaxDegree + 1>;

// Two roots that are no farther apart are one, or none.
constexpr double kMinLength = 1e-12;

constexpr Binomials MakeBinomials() {
    Binomials binomials{};
    for (std::size_t n = 0; n <= Bernstein::kMaxDegree; n++) {
        binomials[n][0] = 1.0;
        for (std::size_t k = 1; k <= n; k++)
            binomials[n][k] = binomials[n - 1][k - 1] + (k < n ? binomials[n - 1][k] : 0.0);
    }
    return binomials;
}

constexpr Binomials kBinomials = MakeBinomials();

}  // namespace

Bernstein::Bernstein(int32 degreeOfIt, const Coefficients& powers) : degree(degreeOfIt) {
    const Coefficients& all = kBinomials[static_cast<std::size_t>(degree)];
    for (std::size_t i = 0; i <= static_cast<std::size_t>(degree); i++)
        for (std::size_t k = 0; k <= i; k++)
            at[i] += kBinomials[i][k] / all[k] * powers[k];
}

int32 Bernstein::SignChanges() const {
    int32 changes = 0;
    for (std::size_t i = 1; i <= static_cast<std::size_t>(degree); i++)
        changes += (at[i - 1] > 0.0) != (at[i] > 0.0);
    return changes;
}

Bernstein Bernstein::Split() {
    Bernstein second = *this;
    second.begin += length / 2;
    second.length /= 2;
    const auto n = static_cast<std::size_t>(degree);
    Coefficients row = at;
    for (std::size_t i = 0; i <= n; i++) {
        at[i] = row[0];
        second.at[n - i] = row[n - i];
        for (std::size_t k = 0; k < n - i; k++)
            row[k] = 0.5 * (row[k] + row[k + 1]);
    }
    length /= 2;
    return second;
}

void SeparateRoots(const Bernstein& whole, std::vector<double>* cuts) {
    if (whole.SignChanges() <= 1 || whole.length < kMinLength) return;
    Bernstein first = whole;
    const Bernstein second = first.Split();
    SeparateRoots(first, cuts);
    cuts->push_back(second.begin);
    SeparateRoots(second, cuts);
}
