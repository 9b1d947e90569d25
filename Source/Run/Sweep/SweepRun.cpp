#include "Run/Sweep/SweepRun.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "Model/Epochs/EpochLimits.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/SystemOrbits.h"
#include "Resources/DocumentTexts.h"
#include "Resources/Runner.h"
#include "Resources/Sweep.h"
#include "Run/CsvText.h"
#include "Run/DocumentEdit.h"
#include "Run/EditText.h"
#include "Run/Options.h"
#include "Run/StateDigest.h"
#include "Run/UntilText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// How soon a run sees that it is to stop.
constexpr std::chrono::milliseconds kPatience{50};

constexpr std::string_view kHeads =
    "ending,time,steps,reports,bodies,mergers,events,energy_error,momentum_drift,"
    "angular_momentum_drift,sha256";
constexpr std::string_view kBodyHeads[] = {"x", "y", "z", "vx",   "vy",   "vz", "a",
                                           "q", "e", "i", "node", "peri", "M"};
constexpr OrbitalElement kElements[] = {
    OrbitalElement::kSemiMajorAxis, OrbitalElement::kPeriapsisDistance,
    OrbitalElement::kEccentricity,  OrbitalElement::kInclination,
    OrbitalElement::kNode,          OrbitalElement::kArgumentOfPeriapsis,
    OrbitalElement::kMeanAnomaly};

void AppendColumn(std::string* to, const std::optional<double>& number) {
    *to += ',';
    if (number) AppendCsv(to, *number);
}

// None of what the body is no more, or of what goes around nothing.
void AppendBody(std::string* to, const MassSystem* body, MassSystem* root) {
    const std::optional<SystemOrbit> orbit = body ? OrbitOf(*body, root) : std::nullopt;
    const ThreeVector position = body ? body->Position() : ThreeVector();
    const ThreeVector velocity = body ? body->Velocity() : ThreeVector();
    for (const double number :
         {position.x, position.y, position.z, velocity.x, velocity.y, velocity.z})
        AppendColumn(to, body ? std::optional(number) : std::nullopt);
    for (const OrbitalElement element : kElements)
        AppendColumn(to, orbit ? std::optional(orbit->elements.Value(element)) : std::nullopt);
}

}  // namespace

SweepRun::SweepRun(const Options& options, const ProgramResources& resources)
    : options_(options),
      resources_(resources),
      document_(collisions_.Target()),
      control_(document_.Portal(), document_.GetCalculator(), this),
      controller_(&document_, &control_, &resources_),
      recorder_(document_.GetCalculator()) {
    // Other runs have the other processors.
    document_.GetCalculator()->SetThreads(1);
    document_.GetCalculator()->AddWatcher(&events_);
    document_.AddConsumer(&recorder_);
    document_.Portal()->AddObserver(this);
}

SweepRun::~SweepRun() {
    document_.Portal()->RemoveObserver(this);
    document_.RemoveConsumer(&recorder_);
}

std::optional<std::string> SweepRun::Prepare(const BMessage& record,
                                             const std::vector<std::string>& edits) {
    if (const DocumentError error = document_.Load(record); error.Failed())
        return error.Reason(resources_);
    if (auto wrong = Edit(options_.edits)) return wrong;
    if (auto wrong = Edit(edits)) return wrong;
    if (auto wrong = FindBodies()) return wrong;
    return FindTarget();
}

std::optional<std::string> SweepRun::Edit(const std::vector<std::string>& edits) {
    DocumentEdit edit(&document_, &controller_, &resources_);
    for (const std::string& text : edits) {
        std::optional<std::string> wrong = edit.Apply(text);
        if (wasTooDeep_) wrong = resources_.InterfaceLabel(kTextEpochsTooDeep);
        if (wrong) return FillIn(resources_.InterfaceLabel(kTextSweepEdit), {text, *wrong});
    }
    return std::nullopt;
}

std::optional<std::string> SweepRun::FindBodies() {
    for (const std::string& name : options_.bodies) {
        const std::optional<int64> id = FindSystem(&document_, name);
        if (!id) return FillIn(resources_.InterfaceLabel(kTextEditNoSystem), {name});
        bodies_.push_back(*id);
    }
    return std::nullopt;
}

std::optional<std::string> SweepRun::FindTarget() {
    double time = 0.0;
    int32 order = 0;
    {
        const ReadGuard guard(document_.Portal());
        time = document_.Portal()->FocusEpoch()->Time();
        order = options_.order.value_or(document_.Portal()->FocusEpoch()->Order());
    }
    if (options_.until) {
        const auto target = ParseUntil(*options_.until, &document_, resources_);
        if (!target || (target->IsTime() && !(target->time > time)))
            return UntilRefusal(*options_.until, &document_, resources_);
        target_ = *target;
        document_.GetCalculator()->SetRunCondition(target_.Condition());
    }
    if (order <= kMaxLowOrder && RunGoal::Of(options_, time, target_).IsBefore(time))
        return resources_.InterfaceLabel(kTextNoWayBack);
    return std::nullopt;
}

bool SweepRun::Run(const std::atomic<bool>& isStopped) {
    control_.UnPause();
    bool goesOn = true;
    while (goesOn && WaitForParking(isStopped))
        goesOn = ResolveCollision();
    control_.Pause();
    touches_ = collisions_.Take();
    if (const auto ending = collisions_.TakeEnding()) ending_ = ending;
    recorder_.End(!touches_.IsEmpty());
    return !goesOn;
}

// The new epoch is in place and its centre of mass where it belongs.
void SweepRun::RunStarting() {
    {
        const WriteGuard guard(document_.Portal());
        AbEpoch* const focus = document_.Portal()->FocusEpoch();
        ApplySettings(options_, focus);
        stopsAtCollision_ = focus->OnContact() == kContactStops;
        events_.SetMerging(focus->OnContact() == kContactMerges);
    }
    start_ = TakeState(document_.Portal());
    RunGoal::Of(options_, start_.time, target_).SetIn(document_.GetCalculator(), start_.time);
    recorder_.Begin(start_);
}

void SweepRun::Changed(int32 what) {
    if (what == kEpochsTooDeep) wasTooDeep_ = true;
    if (what == kCalculatorParked) parked_.release();
}

bool SweepRun::WaitForParking(const std::atomic<bool>& isStopped) {
    while (!isStopped)
        if (parked_.try_acquire_for(kPatience)) return true;
    return false;
}

// True when the run goes on from bodies that have merged.
bool SweepRun::ResolveCollision() {
    if (stopsAtCollision_) return false;
    const BMessage pairs = collisions_.Take();
    if (pairs.IsEmpty()) return false;
    const MergeResult result = controller_.Collide(
        pairs, [this](const MergeResult&) { recorder_.Resume(TakeState(document_.Portal())); });
    mergers_.Add(result);
    for (const Merger& merger : result.mergers)
        events_.Add(merger);
    ending_ = result.unmerged;
    return !ending_ && target_.kind != RunTarget::Kind::kMerger;
}

RunSummary SweepRun::Summarize(const SystemState& end) {
    RunSummary summary;
    summary.mergers = mergers_;
    summary.drift = MeasureDrift(MeasureConserved(start_), MeasureConserved(end), mergers_);
    summary.AddTouches(touches_, end);
    if (!summary.touches.empty())
        summary.ending = RunSummary::Ending::kCollision;
    else if (ending_)
        summary.ending = RunSummary::EndingFor(ending_->reason);
    return summary;
}

std::string SweepRun::HeadColumns(const Options& options) {
    std::string heads(kHeads);
    for (const std::string& body : options.bodies)
        for (const std::string_view head : kBodyHeads)
            heads += ',' + CsvName(body + '.' + std::string(head));
    return heads;
}

std::string SweepRun::EndColumns() {
    const SystemState end = TakeState(document_.Portal());
    const RunSummary summary = Summarize(end);
    std::string columns(RunSummary::NameOf(summary.ending));
    AppendColumn(&columns, end.time);
    for (const int64 number : {recorder_.Steps(), recorder_.Reports(),
                               static_cast<int64>(end.CountBodies()), mergers_.count}) {
        columns += ',';
        AppendCsv(&columns, number);
    }
    columns += ',' + CsvName(events_.Text());
    AppendColumn(&columns, summary.drift.energy);
    AppendColumn(&columns, summary.drift.momentum);
    AppendColumn(&columns, summary.drift.angularMomentum);
    columns += ',' + DigestOf(end);
    const ReadGuard guard(document_.Portal());
    const AbEpoch* const epoch = document_.Portal()->FocusEpoch();
    for (const int64 id : bodies_)
        AppendBody(&columns, epoch->SystemFromID(id), epoch->RootSystem());
    return columns;
}

std::string SweepRun::NoColumns(const Options& options, const std::string& reason) {
    const auto events = kHeads.substr(0, kHeads.find("events"));
    const auto count = [](std::string_view heads) {
        return static_cast<std::size_t>(std::count(heads.begin(), heads.end(), ','));
    };
    const std::size_t bodies = options.bodies.size() * std::size(kBodyHeads);
    return "refused" + std::string(count(events), ',') + CsvName(reason) +
           std::string(count(kHeads) - count(events) + bodies, ',');
}
