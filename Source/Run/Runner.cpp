#include "Run/Runner.h"

#include <cstring>
#include <utility>

#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Resources/CommonTexts.h"
#include "Resources/DocumentTexts.h"
#include "Resources/Runner.h"
#include "Run/DocumentEdit.h"
#include "Run/DocumentImport.h"
#include "Run/EpochListing.h"
#include "Run/OrbitListing.h"
#include "Run/OutputClash.h"
#include "Run/StateDigest.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunEndingText.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/RunRemake.h"
#include "Simulation/Trust/ChaosProbe.h"

namespace {

constexpr int32 kScienceOrder = 4;

}  // namespace

Runner::Runner(const Options& options, const ProgramResources& resources, Ranks* ranks)
    : options_(options),
      resources_(resources),
      output_(options, resources),
      document_(collisions_.Target()),
      control_(document_.Portal(), document_.GetCalculator(), this),
      controller_(&document_, &control_, &resources_),
      recorder_(document_.GetCalculator()),
      motion_(options, document_.GetCalculator()),
      checkpoints_(options, resources, output_, &document_),
      picture_(options, resources, output_, &document_),
      film_(options, resources, output_, &document_),
      live_({options, resources, output_, events_, collisions_, document_, control_, controller_,
             recorder_, reports_, motion_, checkpoints_, film_}),
      run_(live_.Record()) {
    document_.GetCalculator()->SetRanks(ranks);
    document_.AddConsumer(&recorder_);
    document_.Portal()->AddObserver(&events_);
}

Runner::~Runner() {
    document_.Portal()->RemoveObserver(&events_);
    document_.RemoveConsumer(&recorder_);
}

int Runner::Run() {
    if (const int status = LoadDocument(); status != kDone || options_.dump) return status;
    if (const int status = EditDocument(); status != kDone) return status;
    return RunDocument();
}

int Runner::LoadDocument() {
    const RunEvents::NothingToLose nothingToLose(events_);
    BMessage record;
    if (const DocumentError error = ReadRecord(&record); error.Failed())
        return output_.Fail(DocumentName(), error.Reason(resources_));
    if (options_.dump)
        return output_.PrintText(std::string(OutputFile::kStandardOutput), record.ToText());
    if (const DocumentError error = document_.Load(record); error.Failed())
        return output_.Fail(DocumentName(), error.Reason(resources_));
    if (options_.resume)
        if (const auto obstacle = checkpoints_.FindRun(record, &run_))
            return output_.Fail(DocumentName(), resources_.InterfaceLabel(*obstacle));
    for (const std::string& notice : document_.Notices().Lines(resources_))
        static_cast<void>(output_.Fail(DocumentName(), notice));
    return kDone;
}

int Runner::EditDocument() {
    const RunEvents::NothingToLose nothingToLose(events_);
    if (const int status = ImportFiles(options_, &document_, &control_, resources_, output_);
        status != kDone)
        return status;
    DocumentEdit edit(&document_, &controller_, &resources_);
    for (const std::string& text : options_.edits) {
        std::optional<std::string> wrong = edit.Apply(text);
        if (events_.WasTooDeep()) wrong = resources_.InterfaceLabel(kTextEpochsTooDeep);
        if (wrong)
            return output_.Fail(DocumentName(),
                                FillIn(resources_.InterfaceLabel(kTextEdit), {text, *wrong}));
    }
    return kDone;
}

std::string Runner::DocumentName() const {
    if (options_.resume) return *options_.resume;
    return options_.document.value_or(resources_.InterfaceLabel(kLabelUntitled));
}

DocumentError Runner::ReadRecord(BMessage* record) const {
    if (options_.resume) return SimulationFile::Read(*options_.resume, record);
    if (options_.document) return SimulationFile::Read(*options_.document, record);
    *record = resources_.NewSimulation();
    return {};
}

int Runner::RunDocument() {
    if (const auto output = FindClashingOutput(options_))
        return output_.Fail(*output, resources_.InterfaceLabel(kTextSameFile));
    // Sooner now than after a long run.
    if (options_.save) {
        const DocumentError error = SimulationFile::CanWrite(*options_.save);
        if (error.Failed()) return output_.Fail(*options_.save, error.Reason(resources_));
    }
    if (const DocumentError error = checkpoints_.CanWrite(); error.Failed())
        return output_.Fail(options_.CheckpointPath(), error.Reason(resources_));
    if (const int status = picture_.CheckPlace(); status != kDone) return status;
    if (const int status = film_.CheckPlace(); status != kDone) return status;
    if (options_.exported && *options_.exported != OutputFile::kStandardOutput) {
        OutputFile place;  // opened and closed, it stays as it is
        if (const int error = place.Open(*options_.exported); error != 0)
            return output_.Fail(*options_.exported, std::strerror(error));
    }
    if (const int error = reports_.Open(options_, run_); error != 0)
        return output_.Fail(*options_.csv, std::strerror(error));
    if (const auto obstacle = reports_.Obstacle())
        return output_.Fail(*options_.csv, resources_.InterfaceLabel(*obstacle));
    if (options_.threads) document_.GetCalculator()->SetThreads(*options_.threads);
    if (!options_.WantsRun()) return WriteWithoutRun();
    if (const int status = FindTarget(); status != kDone) return status;
    if (const auto obstacle = FindObstacle())
        return output_.Fail(DocumentName(), resources_.InterfaceLabel(*obstacle));
    if (const int error = motion_.Open(run_); error != 0)
        return output_.Fail(*options_.events, std::strerror(error));
    if (const auto obstacle = motion_.FileObstacle())
        return output_.Fail(*options_.events, resources_.InterfaceLabel(*obstacle));
    if (options_.resume)
        Resume();
    else
        control_.UnPause();
    if (events_.WasTooDeep())
        return output_.Fail(DocumentName(), resources_.InterfaceLabel(kTextEpochsTooDeep));
    live_.WaitForEnd();
    return WriteResults();
}

int Runner::WriteWithoutRun() {
    const RunEvents::NothingToLose nothingToLose(events_);
    picture_.TakeBodies();
    if (options_.save)
        if (const int status = Save(); status != kDone) return status;
    if (const int status = picture_.Write(); status != kDone) return status;
    if (const int status = film_.Write(); status != kDone) return status;
    if (const int status = ExportBodies(options_, &document_, output_); status != kDone)
        return status;
    return PrintListings();
}

// What a run that is resumed was begun with counts, too.
int Runner::FindTarget() {
    const std::optional<std::string>& until = options_.resume ? run_.goal.until : options_.until;
    if (!until) return kDone;
    const auto target = ParseUntil(*until, &document_, resources_);
    const bool isOver =
        target && target->IsTime() && !options_.resume && !(target->time > OfFocus(&AbEpoch::Time));
    if (!target || isOver)
        return output_.Fail(DocumentName(), UntilRefusal(*until, &document_, resources_));
    live_.SetTarget(*target);
    document_.GetCalculator()->SetRunCondition(target->Condition());
    return kDone;
}

std::optional<int32> Runner::FindObstacle() {
    const double time = OfFocus(&AbEpoch::Time);
    return motion_.Obstacle(
        options_.order.value_or(OfFocus(&AbEpoch::Order)),
        !options_.resume && RunGoal::Of(options_, time, live_.Target()).IsBefore(time));
}

// The new epoch is in place and its centre of mass where it belongs.
void Runner::RunStarting() {
    EpochPortal* const portal = document_.Portal();
    int32 order = 0;
    {
        const WriteGuard guard(portal);
        AbEpoch* const focus = portal->FocusEpoch();
        ApplySettings(options_, focus);
        run_.stopsAtCollision = focus->OnContact() == kContactStops;
        order = focus->Order();
    }
    if (order < kScienceOrder)
        output_.Note(
            FillIn(resources_.InterfaceLabel(kTextHistoricalOrder), {std::to_string(order)}));

    const SystemState& start = live_.Begin(TakeState(document_.Portal()));
    run_.startTime = start.time;
    run_.goal = RunGoal::Of(options_, start.time, live_.Target());
    run_.goal.SetIn(document_.GetCalculator(), start.time);
    BeginReports(start);
}

void Runner::Resume() {
    live_.GoOn();
    BeginReports(TakeState(document_.Portal()));
    control_.ResumeRun();
}

void Runner::BeginReports(const SystemState& state) {
    TimedStates* const states = motion_.States(reports_, OfFocus(&AbEpoch::Order),
                                               document_.GetCalculator()->IsBackwards());
    reports_.Begin(&recorder_, states, state, run_);
    live_.StartClock();
}

int Runner::WriteResults() {
    const RunEvents::LastChance lastChance(
        events_, options_.quiet ? std::string() : resources_.InterfaceLabel(kTextStillWriting));
    recorder_.End(!live_.Touches().IsEmpty());
    PrintEnding();
    if (const int error = reports_.Close(); error != 0)
        return output_.Fail(*options_.csv, std::strerror(error));
    if (const int error = motion_.Close(); error != 0)
        return output_.Fail(*options_.events, std::strerror(error));
    if (const std::size_t missed = motion_.MissedTimes(); missed > 0)
        output_.Note(FillIn(resources_.InterfaceLabel(kTextMissedTimes), {std::to_string(missed)}));
    if (options_.save)
        if (const int status = Save(); status != kDone) return status;
    // Of a run that was stopped it stays.
    if (!live_.IsInterrupted()) checkpoints_.Remove();
    if (const int status = picture_.Write(); status != kDone) return status;
    if (const int status = film_.Write(); status != kDone) return status;
    if (const int status = ExportBodies(options_, &document_, output_); status != kDone)
        return status;
    if (const int status = PrintSummary(); status != kDone) return status;
    if (const int status = PrintListings(); status != kDone) return status;
    return EndStatus();
}

// A run that could not go on is a failure, and told even to those who want no notes.
void Runner::PrintEnding() {
    const std::optional<RunEnding>& ending = live_.Ending();
    if (!ending) return;
    const std::string text = FillIn(resources_.InterfaceLabel(kTextRunEnded),
                                    {RunEndingText(*ending, document_.Portal(), resources_)});
    if (ending->reason == RunEnding::Reason::kNothingInteracts)
        output_.Note(text);
    else
        RunnerOutput::Print(text);
}

int Runner::EndStatus() const {
    if (events_.Signal() != 0) return kStoppedBySignal + events_.Signal();
    const std::optional<RunEnding>& ending = live_.Ending();
    const bool couldGoOn = !ending || ending->reason == RunEnding::Reason::kNothingInteracts;
    return couldGoOn ? kDone : kCouldNotGoOn;
}

int Runner::Save() {
    BMessage record;
    DocumentError error = document_.Store(&record, true);
    if (!error.Failed()) error = output_.WriteDocument(*options_.save, std::move(record));
    return error.Failed() ? output_.Fail(*options_.save, error.Reason(resources_)) : kDone;
}

int Runner::PrintListings() {
    std::string text;
    if (options_.epochs) text += ListEpochs(&document_, resources_);
    if (options_.elements)
        text += options_.json ? OrbitsAsJson(&document_) : ListOrbits(&document_, resources_);
    if (text.empty()) return kDone;
    return output_.PrintText(std::string(OutputFile::kStandardOutput), text);
}

int Runner::PrintSummary() {
    if (options_.quiet && !options_.json) return kDone;
    const RunSummary summary = Summarize();
    const std::string standardOutput(OutputFile::kStandardOutput);
    if (options_.json) return output_.PrintText(standardOutput, summary.Json());
    // The reports have standard output for themselves.
    if (options_.csv == standardOutput) {
        output_.Note(summary.Text(resources_));
        return kDone;
    }
    return output_.PrintText(standardOutput, summary.Text(resources_));
}

// Of the run that has ended; a signal ends it.
RunSummary::Chaos Runner::LookForChaos() {
    std::optional<ChaosProbe> probe;
    {
        const ReadGuard guard(document_.Portal());
        const AbEpoch& epoch = *document_.Portal()->FocusEpoch();
        if (RunRemake::IsPossible(epoch)) probe.emplace(epoch);
    }
    if (!probe || probe->Make([this](double) { return events_.Signal() == 0; }) !=
                      RunHistory::Finding::kFound)
        return {};
    return {probe->Span(), probe->FoldingTime(), true};
}

RunSummary Runner::Summarize() {
    const SystemState end = TakeState(document_.Portal());
    RunSummary summary;
    summary.document = DocumentName();
    summary.epoch = OfFocus(&AbEpoch::Name);
    summary.timeUval = OfFocus(&AbEpoch::TimeUval);
    summary.timeUnit = resources_.TimeUnits().Abbreviation(summary.timeUval);
    summary.startTime = run_.startTime;
    summary.endTime = end.time;
    summary.steps = recorder_.Steps();
    summary.reports = recorder_.Reports();
    summary.order = document_.GetCalculator()->OrderInUse();
    summary.cutoff = document_.GetCalculator()->CutoffInUse();
    summary.seconds = live_.Seconds();
    summary.bodies = end.CountBodies();
    summary.massiveBodies = end.CountMassive();
    summary.mergers = run_.mergers;
    summary.drift = MeasureDrift(live_.StartConserved(), MeasureConserved(end), run_.mergers);
    if (options_.chaos) summary.chaos = LookForChaos();
    summary.digest = DigestOf(end);
    summary.AddTouches(live_.Touches(), end);
    if (!summary.touches.empty())
        summary.ending = RunSummary::Ending::kCollision;
    else if (live_.IsInterrupted())
        summary.ending = RunSummary::Ending::kInterrupted;
    else if (live_.Ending())
        summary.ending = RunSummary::EndingFor(live_.Ending()->reason);
    return summary;
}
