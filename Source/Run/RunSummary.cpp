#include "Run/RunSummary.h"

#include "Calculation/CollisionMailbox.h"
#include "Platform/Application/BMessage.h"
#include "Resources/Runner.h"
#include "Resources/Trust.h"
#include "Run/JsonObject.h"
#include "Run/NumberText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SystemState.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kTimeDigits = 10;
constexpr int kErrorDigits = 3;
constexpr int kSecondsDigits = 3;

double Rate(const RunSummary& summary) {
    return summary.seconds > 0.0 ? static_cast<double>(summary.steps) / summary.seconds : 0.0;
}

std::string TouchesJson(const std::vector<RunSummary::Touch>& touches) {
    std::string list = "[";
    for (const RunSummary::Touch& touch : touches) {
        JsonObject pair;
        pair.Add("lighter_id", touch.lighterID);
        pair.Add("lighter", touch.lighter);
        pair.Add("heavier_id", touch.heavierID);
        pair.Add("heavier", touch.heavier);
        if (list.size() > 1) list += ',';
        list += pair.Text();
    }
    return list + ']';
}

}  // namespace

void RunSummary::AddTouches(const BMessage& pairs, const SystemState& end) {
    int64 lighter = 0;
    int64 heavier = 0;
    for (int32 i = 0; pairs.FindInt64(CollisionMailbox::kLaterField, i, &lighter) == B_OK &&
                      pairs.FindInt64(CollisionMailbox::kEarlierField, i, &heavier) == B_OK;
         i++)
        touches.push_back({lighter, heavier, end.NameOf(lighter), end.NameOf(heavier)});
}

std::string_view RunSummary::NameOf(Ending ending) {
    switch (ending) {
        case Ending::kDone:
            return "done";
        case Ending::kCollision:
            return "collision";
        case Ending::kInterrupted:
            return "interrupted";
        case Ending::kNotFinite:
            return "not finite";
        case Ending::kTimeStands:
            return "time stands";
        case Ending::kNothingInteracts:
            return "nothing interacts";
        case Ending::kNotMerged:
            return "not merged";
        case Ending::kNoMemory:
            return "no memory";
        case Ending::kTouched:
            return "touched";
    }
    return "";
}

std::string_view RunSummary::NameOf(Trust::Verdict verdict) {
    switch (verdict) {
        case Trust::Verdict::kKept:
            return "kept";
        case Trust::Verdict::kPicture:
            return "picture";
        case Trust::Verdict::kNotTrue:
            return "not true";
        case Trust::Verdict::kTrue:
            return "true";
        case Trust::Verdict::kUnknown:
            break;
    }
    return "unknown";
}

RunSummary::Ending RunSummary::EndingFor(RunEnding::Reason reason) {
    switch (reason) {
        case RunEnding::Reason::kNotFinite:
            return Ending::kNotFinite;
        case RunEnding::Reason::kTimeStands:
            return Ending::kTimeStands;
        case RunEnding::Reason::kNotMerged:
            return Ending::kNotMerged;
        case RunEnding::Reason::kNoMemory:
            return Ending::kNoMemory;
        case RunEnding::Reason::kGoal:
            return Ending::kDone;
        case RunEnding::Reason::kTouchedBackwards:
        case RunEnding::Reason::kTouched:
            return Ending::kTouched;
        case RunEnding::Reason::kNothingInteracts:
            break;
    }
    return Ending::kNothingInteracts;
}

std::string RunSummary::Text(const ProgramResources& resources) const {
    const auto line = [&resources](RunnerText text,
                                   std::initializer_list<std::string_view> values) {
        return FillIn(resources.InterfaceLabel(text), values);
    };
    const auto time = [this](double seconds_) {
        return RoundedText(seconds_ / timeUval, kTimeDigits);
    };
    const auto ratio = [&resources](const std::optional<double>& value) {
        return value ? RoundedText(*value, kErrorDigits)
                     : std::string(resources.InterfaceLabel(kTextUndefined));
    };
    std::string text = line(kTextSummaryDocument, {document, epoch});
    for (const Touch& touch : touches)
        text +=
            line(kTextSummaryCollision, {touch.heavier, touch.lighter, time(endTime), timeUnit});
    if (ending == Ending::kInterrupted) text += line(kTextSummaryInterrupted, {});
    text += line(kTextSummaryTime, {time(startTime), time(endTime), timeUnit});
    text += line(kTextSummarySteps, {std::to_string(steps), RoundedText(seconds, kSecondsDigits),
                                     RateText(Rate(*this))});
    text += line(kTextSummaryReports, {std::to_string(reports)});
    text += line(kTextSummaryOrder, {std::to_string(order), RoundedText(cutoff, kErrorDigits)});
    text += line(kTextSummaryBodies, {std::to_string(bodies), std::to_string(massiveBodies)});
    if (mergers.count > 0)
        text += line(kTextSummaryMergers, {std::to_string(mergers.count),
                                           RoundedText(mergers.kineticEnergyLoss, kErrorDigits)});
    text += line(kTextSummaryEnergy, {ratio(drift.energy)});
    text += line(kTextSummaryMomentum, {ratio(drift.momentum)});
    text += line(kTextSummaryAngular, {ratio(drift.angularMomentum)});
    const std::string trust = TrustWords(GetTrust(), resources);
    text += FillIn(resources.InterfaceLabel(kTextSummaryTrust),
                   {trust.empty() ? resources.InterfaceLabel(kTextUndefined) : trust});
    if (chaos) text += FillIn(resources.InterfaceLabel(kTextSummaryChaos), {ChaosText(resources)});
    text += line(kTextSummaryDigest, {digest});
    return text;
}

std::string RunSummary::ChaosText(const ProgramResources& resources) const {
    if (!chaos->isKnown) return resources.InterfaceLabel(kTextNoProbe);
    const double time = chaos->foldingTime.value_or(chaos->span);
    return FillIn(resources.InterfaceLabel(chaos->foldingTime ? kTextFoldingTime : kTextNoFolding),
                  {RoundedText(time / timeUval, kErrorDigits), timeUnit});
}

std::string RunSummary::Json() const {
    JsonObject object;
    object.Add("document", document);
    object.Add("epoch", epoch);
    object.Add("ending", NameOf(ending));
    object.AddJson("collisions", TouchesJson(touches));
    object.Add("start_time_s", startTime);
    object.Add("end_time_s", endTime);
    object.Add("time_unit", timeUnit);
    object.Add("time_unit_s", timeUval);
    object.Add("steps", steps);
    object.Add("reports", reports);
    object.Add("order", static_cast<int64>(order));
    object.Add("cutoff", cutoff);
    object.Add("seconds", seconds);
    object.Add("steps_per_second", Rate(*this));
    object.Add("bodies", static_cast<int64>(bodies));
    object.Add("massive_bodies", static_cast<int64>(massiveBodies));
    object.Add("mergers", mergers.count);
    object.Add("merger_kinetic_energy_loss_m5_s4", mergers.kineticEnergyLoss);
    object.Add("relative_energy_error", drift.energy);
    object.Add("relative_momentum_drift", drift.momentum);
    object.Add("relative_angular_momentum_drift", drift.angularMomentum);
    const Trust trust = GetTrust();
    object.Add("trust", NameOf(trust.verdict));
    if (trust.verdict == Trust::Verdict::kKept)
        object.Add("trust_digits", static_cast<int64>(trust.digits));
    if (chaos) {
        object.Add("e_folding_time_s", chaos->foldingTime);
        object.Add("e_folding_looked_for_s",
                   chaos->isKnown ? std::optional(chaos->span) : std::nullopt);
    }
    object.Add("sha256", digest);
    return object.Text() + '\n';
}
