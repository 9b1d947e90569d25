#include "Run/Dialogue/Dialogue.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iostream>

#include "Model/Epochs/EpochLimits.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Resources/DocumentTexts.h"
#include "Resources/Exchange.h"
#include "Resources/Runner.h"
#include "Run/CsvText.h"
#include "Run/Dialogue/OrderLine.h"
#include "Run/DocumentEdit.h"
#include "Run/DocumentImport.h"
#include "Run/JsonObject.h"
#include "Run/RunGoal.h"
#include "Run/RunSummary.h"
#include "Run/UntilText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/SystemState.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

std::string AsJson(const ThreeVector& vector) {
    std::string json = "[";
    for (const double component : {vector.x, vector.y, vector.z}) {
        if (json.size() > 1) json += ',';
        AppendCsv(&json, component);
    }
    return json + ']';
}

}  // namespace

struct Dialogue::Order {
    std::string_view name;
    Wrong (Dialogue::*carryOut)(const std::string& value);
    bool answersWithState;
};

const Dialogue::Order Dialogue::kOrders[] = {
    {"import", &Dialogue::Import, false}, {"edit", &Dialogue::Edit, false},
    {"run", &Dialogue::RunFor, true},     {"steps", &Dialogue::RunSteps, true},
    {"until", &Dialogue::RunUntil, true}, {"state", &Dialogue::State, true},
    {"save", &Dialogue::Save, false},
};

Dialogue::Dialogue(const Options& options, const ProgramResources& resources)
    : options_(options),
      resources_(resources),
      output_(options, resources),
      document_(collisions_.Target()),
      control_(document_.Portal(), document_.GetCalculator(), this),
      controller_(&document_, &control_, &resources_),
      recorder_(document_.GetCalculator()) {
    document_.AddConsumer(&recorder_);
    document_.Portal()->AddObserver(this);
    if (options_.threads) document_.GetCalculator()->SetThreads(*options_.threads);
}

Dialogue::~Dialogue() {
    document_.Portal()->RemoveObserver(this);
    document_.RemoveConsumer(&recorder_);
}

std::string_view Dialogue::FindOther(const Options& options) {
    const std::pair<bool, std::string_view> others[] = {
        {options.steps && *options.steps > 0, "--steps"},
        {options.duration.has_value(), "--for"},
        {options.until.has_value(), "--until"},
        {options.csv.has_value(), "--csv"},
        {options.save.has_value(), "--save"},
        {options.png.has_value(), "--png"},
        {options.frames.has_value(), "--frames"},
        {options.events.has_value(), "--events"},
        {options.exported.has_value(), "--export"},
        {options.resume.has_value(), "--resume"},
        {options.IsSweep(), "--sweep"},
        {options.epochs, "--epochs"},
        {options.elements, "--elements"},
        {options.chaos, "--chaos"},
        {options.json, "--json"},
        {options.dump, "--dump"}};
    for (const auto& [isGiven, name] : others)
        if (isGiven) return name;
    return {};
}

int Dialogue::Run() {
    if (const Wrong wrong = Load())
        return output_.Fail(options_.document.value_or(std::string()), *wrong);
    if (const int status = ImportFiles(options_, &document_, &control_, resources_, output_);
        status != RunnerOutput::kDone)
        return status;
    for (const std::string& edit : options_.edits)
        if (const Wrong wrong = Edit(edit)) return output_.Fail(edit, *wrong);
    for (std::string line; std::getline(std::cin, line);) {
        if (line.empty()) continue;
        const std::string answer = Answer(line) + '\n';
        if (std::fwrite(answer.data(), 1, answer.size(), stdout) != answer.size() ||
            std::fflush(stdout) != 0)
            return RunnerOutput::kCouldNot;
    }
    return RunnerOutput::kDone;
}

Dialogue::Wrong Dialogue::Load() {
    BMessage record;
    if (!options_.document) {
        record = resources_.NewSimulation();
    } else if (const DocumentError error = SimulationFile::Read(*options_.document, &record);
               error.Failed()) {
        return error.Reason(resources_);
    }
    if (const DocumentError error = document_.Load(record); error.Failed())
        return error.Reason(resources_);
    // The answers have standard output for themselves.
    for (const std::string& notice : document_.Notices().Lines(resources_))
        static_cast<void>(output_.Fail(options_.document.value_or(std::string()), notice));
    return std::nullopt;
}

std::string Dialogue::Answer(std::string_view line) {
    JsonObject answer;
    Wrong wrong;
    const auto order = OrderLine::From(line);
    const Order* known = nullptr;
    for (const Order& one : kOrders)
        if (order && one.name == order->name) known = &one;
    if (!order)
        wrong = resources_.InterfaceLabel(kTextNotAnOrder);
    else if (known == nullptr)
        wrong = FillIn(resources_.InterfaceLabel(kTextOrderUnknown), {order->name});
    else
        wrong = (this->*known->carryOut)(order->value);
    if (wrong) {
        answer.Add("error", *wrong);
        return answer.Text();
    }
    return known->answersWithState ? StateAsJson() : std::string("{\"ok\":true}");
}

Dialogue::Wrong Dialogue::Import(const std::string& path) {
    BodyImport import(&document_, &control_, &resources_);
    const auto fault = ImportFile(path, options_, false, &import, resources_, output_);
    return fault ? Wrong(fault->Text(resources_)) : std::nullopt;
}

Dialogue::Wrong Dialogue::Edit(const std::string& edit) {
    Wrong wrong = DocumentEdit(&document_, &controller_, &resources_).Apply(edit);
    if (wasTooDeep_.exchange(false)) wrong = resources_.InterfaceLabel(kTextEpochsTooDeep);
    return wrong;
}

Dialogue::Wrong Dialogue::Save(const std::string& path) {
    BMessage record;
    DocumentError error = document_.Store(&record, true);
    if (!error.Failed()) error = output_.WriteDocument(path, std::move(record));
    return error.Failed() ? Wrong(error.Reason(resources_)) : std::nullopt;
}

Dialogue::Wrong Dialogue::RunFor(const std::string& duration) {
    const UnitTable::Parsed parsed = resources_.TimeUnits().Parse(duration);
    if (!parsed || !std::isfinite(parsed.value) || parsed.value == 0.0)
        return BadValue("run", duration);
    options_.duration = parsed.value;
    return Go();
}

Dialogue::Wrong Dialogue::RunSteps(const std::string& steps) {
    int64 count = 0;
    const char* const end = steps.data() + steps.size();
    const auto read = std::from_chars(steps.data(), end, count);
    if (read.ec != std::errc() || read.ptr != end || count < 1) return BadValue("steps", steps);
    options_.steps = count;
    return Go();
}

Dialogue::Wrong Dialogue::RunUntil(const std::string& goal) {
    const auto target = ParseUntil(goal, &document_, resources_);
    const double time = TakeState(document_.Portal()).time;
    if (!target || (target->IsTime() && !(target->time > time)))
        return UntilRefusal(goal, &document_, resources_);
    options_.until = goal;
    target_ = *target;
    document_.GetCalculator()->SetRunCondition(target_.Condition());
    return Go();
}

// Asked for with any value.
Dialogue::Wrong Dialogue::State(const std::string&) {
    return std::nullopt;
}

Dialogue::Wrong Dialogue::BadValue(std::string_view order, std::string_view value) const {
    return FillIn(resources_.InterfaceLabel(kTextBadValue), {order, value});
}

Dialogue::Wrong Dialogue::Go() {
    ending_.reset();
    hasEndedAtCollision_ = false;
    mergers_ = 0;
    const SystemState before = TakeState(document_.Portal());
    int32 order = 0;
    {
        const ReadGuard guard(document_.Portal());
        order = options_.order.value_or(document_.Portal()->FocusEpoch()->Order());
    }
    Wrong wrong;
    if (order <= kMaxLowOrder && RunGoal::Of(options_, before.time, target_).IsBefore(before.time))
        wrong = resources_.InterfaceLabel(kTextNoWayBack);
    if (!wrong) {
        // Of what has parked until now, by edits.
        while (parked_.try_acquire()) {
        }
        control_.UnPause();
        if (wasTooDeep_.exchange(false)) {
            wrong = resources_.InterfaceLabel(kTextEpochsTooDeep);
        } else {
            do
                parked_.acquire();
            while (ResolveCollision());
            // As edits do: what pauses twice would have to go on twice.
            control_.PauseForUser();
            hasEndedAtCollision_ = !collisions_.Take().IsEmpty();
            if (const auto ending = collisions_.TakeEnding()) ending_ = ending;
            recorder_.End(hasEndedAtCollision_);
        }
    }
    options_.duration.reset();
    options_.steps.reset();
    options_.until.reset();
    target_ = {.kind = RunTarget::Kind::kNone};
    return wrong;
}

void Dialogue::RunStarting() {
    {
        const WriteGuard guard(document_.Portal());
        AbEpoch* const focus = document_.Portal()->FocusEpoch();
        ApplySettings(options_, focus);
        stopsAtCollision_ = focus->OnContact() == kContactStops;
    }
    const SystemState start = TakeState(document_.Portal());
    RunGoal::Of(options_, start.time, target_).SetIn(document_.GetCalculator(), start.time);
    recorder_.Begin(start);
}

void Dialogue::Changed(int32 what) {
    if (what == kEpochsTooDeep) wasTooDeep_ = true;
    if (what == kCalculatorParked) parked_.release();
}

// True when the run goes on from bodies that have merged.
bool Dialogue::ResolveCollision() {
    if (stopsAtCollision_) return false;
    const BMessage pairs = collisions_.Take();
    if (pairs.IsEmpty()) return false;
    const MergeResult result = controller_.Collide(
        pairs, [this](const MergeResult&) { recorder_.Resume(TakeState(document_.Portal())); });
    mergers_ += static_cast<int64>(result.mergers.size());
    ending_ = result.unmerged;
    return !ending_ && target_.kind != RunTarget::Kind::kMerger;
}

std::string Dialogue::StateAsJson() {
    const SystemState state = TakeState(document_.Portal());
    std::string bodies = "[";
    for (std::size_t i = 0; i < state.CountBodies(); i++) {
        JsonObject body;
        body.Add("name", state.names[i]);
        body.Add("gm", state.gm[i]);
        body.AddJson("r", AsJson(state.Position(i)));
        body.AddJson("v", AsJson(state.Velocity(i)));
        bodies += (i == 0 ? "" : ",") + body.Text();
    }
    RunSummary::Ending ending = RunSummary::Ending::kDone;
    if (hasEndedAtCollision_)
        ending = RunSummary::Ending::kCollision;
    else if (ending_)
        ending = RunSummary::EndingFor(ending_->reason);
    JsonObject answer;
    answer.AddJson("ok", "true");
    answer.Add("time", state.time);
    answer.Add("ending", RunSummary::NameOf(ending));
    answer.Add("mergers", mergers_);
    answer.AddJson("bodies", bodies + ']');
    return answer.Text();
}
