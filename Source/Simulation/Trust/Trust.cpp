#include "Simulation/Trust/Trust.h"

#include <algorithm>
#include <cmath>

#include "Model/Epochs/EpochLimits.h"
#include "Model/Units/QuantityText.h"
#include "Resources/Trust.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kErrorDigits = 2;

int DigitsOf(double error) {
    if (!(error > 0.0)) return Trust::kMostDigits;
    return std::clamp(static_cast<int>(std::floor(-std::log10(error))), 0, Trust::kMostDigits);
}

// None: nothing of it is known.
std::optional<double> Largest(const Drift& drift) {
    std::optional<double> largest;
    for (const auto& part : {drift.energy, drift.momentum, drift.angularMomentum})
        if (part) largest = std::max(largest.value_or(0.0), std::fabs(*part));
    return largest;
}

}  // namespace

std::optional<double> StepsPerRadian(int32 order, double cutoff) {
    if (order < kMinOrder || order > kMaxLowOrder || !IsCutoff(cutoff)) return std::nullopt;
    return std::pow(cutoff, -1.0 / (order - 1));
}

Trust Judge(const Evidence& evidence) {
    using Verdict = Trust::Verdict;
    const auto largest = Largest(evidence.drift);
    if (largest && *largest > Trust::kMostOfPicture) return {Verdict::kNotTrue, 0};
    if (evidence.difference) {
        const int digits = DigitsOf(*evidence.difference);
        return {digits > 0 ? Verdict::kTrue : Verdict::kNotTrue, digits};
    }
    if (!largest) return {};
    const auto steps = StepsPerRadian(evidence.order, evidence.cutoff);
    if (*largest > Trust::kMostOfKept || (steps && *steps < Trust::kLeastSteps))
        return {Verdict::kPicture, 0};
    return {Verdict::kKept, DigitsOf(std::fabs(evidence.drift.energy.value_or(*largest)))};
}

std::string TrustWords(const Trust& trust, const ProgramResources& resources) {
    const std::string digits = std::to_string(trust.digits);
    switch (trust.verdict) {
        case Trust::Verdict::kKept:
            return FillIn(resources.InterfaceLabel(kTextEnergyKept), {digits});
        case Trust::Verdict::kPicture:
            return resources.InterfaceLabel(kTextGoodForPicture);
        case Trust::Verdict::kNotTrue:
            return resources.InterfaceLabel(kTextNotToBeBelieved);
        case Trust::Verdict::kTrue:
            return FillIn(resources.InterfaceLabel(kTextTrueTo), {digits});
        case Trust::Verdict::kUnknown:
            break;
    }
    return {};
}

std::string ExplainTrust(const Evidence& evidence, const ProgramResources& resources) {
    std::string text = TrustWords(Judge(evidence), resources);
    if (text.empty()) return resources.InterfaceLabel(kTextNothingToJudge);
    text += "\n\n";
    const auto add = [&](int32 label, const std::optional<double>& value) {
        if (value)
            text += FillIn(resources.InterfaceLabel(label),
                           {print_double(std::fabs(*value), kErrorDigits)}) +
                    "\n\n";
    };
    add(kTextTrustEnergy, evidence.drift.energy);
    add(kTextTrustMomentum, evidence.drift.momentum);
    add(kTextTrustAngular, evidence.drift.angularMomentum);
    if (evidence.mergers > 0)
        text += FillIn(resources.InterfaceLabel(kTextTrustMergers),
                       {std::to_string(evidence.mergers)}) +
                "\n\n";
    if (const auto steps = StepsPerRadian(evidence.order, evidence.cutoff))
        text += FillIn(resources.InterfaceLabel(kTextTrustSteps),
                       {Grouped(std::to_string(std::llround(*steps)))}) +
                "\n\n";
    add(kTextTrustShortest, evidence.shortestStep);
    add(kTextTrustDifference, evidence.difference);
    if (!evidence.difference) text += resources.InterfaceLabel(kTextTrustUntested) + "\n\n";
    return text + resources.InterfaceLabel(kTextTrustLimits);
}
