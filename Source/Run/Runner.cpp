#include "Run/Runner.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <utility>

#include "Calculation/CollisionMailbox.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Storage/AtomicFile.h"
#include "Run/CsvWriter.h"
#include "Run/DocumentEdit.h"
#include "Run/EpochListing.h"
#include "Run/NumberText.h"
#include "Run/RunnerTexts.h"
#include "Run/StateDigest.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunEndingText.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kProgressInterval = 200;  // ms
constexpr int32 kScienceOrder = 4;
constexpr double kLongestWait = 1e9;  // ms
constexpr int kTimeDigits = 10;
constexpr double kNoTimeLimit = std::numeric_limits<double>::infinity();

// True when both paths lead to one file, which need not exist.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    if (std::filesystem::equivalent(a, b, error)) return true;
    const auto first = std::filesystem::weakly_canonical(a, error);
    const auto second = std::filesystem::weakly_canonical(b, error);
    return !error && first == second;
}

RunSummary::Ending EndingFor(RunEnding::Reason reason) {
    switch (reason) {
        case RunEnding::Reason::kNotFinite:
            return RunSummary::Ending::kNotFinite;
        case RunEnding::Reason::kTimeStands:
            return RunSummary::Ending::kTimeStands;
        case RunEnding::Reason::kNotMerged:
            return RunSummary::Ending::kNotMerged;
        case RunEnding::Reason::kNoMemory:
            return RunSummary::Ending::kNoMemory;
        case RunEnding::Reason::kNothingInteracts:
            break;
    }
    return RunSummary::Ending::kNothingInteracts;
}

}  // namespace

Runner::Runner(const Options& options, const ProgramResources& resources)
    : options_(options),
      resources_(resources),
      document_(collisions_.Target()),
      control_(document_.Portal(), document_.GetCalculator(), this),
      controller_(&document_, &control_, &resources_),
      recorder_(document_.GetCalculator()) {
    document_.AddConsumer(&recorder_);
    if (options_.png) {
        painter_ = RunPainter::Make(document_.Portal(), document_.GetCalculator(), resources_);
        document_.AddConsumer(painter_.get());
    }
    document_.Portal()->AddObserver(&events_);
}

Runner::~Runner() {
    document_.Portal()->RemoveObserver(&events_);
    if (painter_ != nullptr) document_.RemoveConsumer(painter_.get());
    document_.RemoveConsumer(&recorder_);
}

int Runner::Run() {
    if (const int status = LoadDocument(); status != kDone || options_.dump) return status;
    if (const int status = EditDocument(); status != kDone) return status;
    return RunDocument();
}

int Runner::LoadDocument() {
    const RunEvents::NothingToLose nothingToLose;
    BMessage record;
    if (const DocumentError error = ReadRecord(&record); error.Failed())
        return Fail(DocumentName(), error.Reason(resources_));
    if (options_.dump) return PrintText(std::string(OutputFile::kStandardOutput), record.ToText());
    if (const DocumentError error = document_.Load(record); error.Failed())
        return Fail(DocumentName(), error.Reason(resources_));
    if (options_.resume)
        if (const int status = FindRun(record); status != kDone) return status;
    for (const std::string& notice : document_.Notices().Lines(resources_))
        static_cast<void>(Fail(DocumentName(), notice));
    return kDone;
}

int Runner::EditDocument() {
    DocumentEdit edit(&document_, &controller_, &resources_);
    for (const std::string& text : options_.edits)
        if (const auto wrong = edit.Apply(text))
            return Fail(DocumentName(),
                        FillIn(resources_.InterfaceLabel(kTextEdit), {text, *wrong}));
    return kDone;
}

// The document holds a run, and the calculator takes it.
int Runner::FindRun(const BMessage& record) {
    const status_t found = run_.FindIn(record);
    if (found == B_NAME_NOT_FOUND)
        return Fail(DocumentName(), resources_.InterfaceLabel(kTextNoRun));
    document_.Portal()->WriteLock();
    const status_t taken =
        found == B_OK ? document_.GetCalculator()->ResumeRun(run_.calculator) : found;
    document_.Portal()->WriteUnlock();
    run_.calculator.MakeEmpty();
    return taken == B_OK ? kDone
                         : Fail(DocumentName(), resources_.InterfaceLabel(kTextRunDoesNotFit));
}

std::string Runner::DocumentName() const {
    if (options_.resume) return *options_.resume;
    return options_.document.value_or(resources_.InterfaceLabel(kTextTemplateName));
}

DocumentError Runner::ReadRecord(BMessage* record) const {
    if (options_.resume) return SimulationFile::Read(*options_.resume, record);
    if (options_.document) return SimulationFile::Read(*options_.document, record);
    *record = resources_.NewSimulation();
    return {};
}

int Runner::RunDocument() {
    if (const auto output = ClashingOutput())
        return Fail(*output, resources_.InterfaceLabel(kTextSameFile));
    // Sooner now than after a long run.
    if (options_.save) {
        const DocumentError error = SimulationFile::CanWrite(*options_.save);
        if (error.Failed()) return Fail(*options_.save, error.Reason(resources_));
    }
    if (options_.checkpoint) {
        const DocumentError error = SimulationFile::CanWrite(options_.CheckpointPath());
        if (error.Failed()) return Fail(options_.CheckpointPath(), error.Reason(resources_));
    }
    if (options_.png) {
        AtomicFile file;
        if (file.Open(*options_.png) != B_OK) return FailPicture(file);
    }
    if (options_.csv)
        if (const int error = csvFile_.Open(*options_.csv); error != 0)
            return Fail(*options_.csv, std::strerror(error));
    if (options_.threads) document_.GetCalculator()->SetThreads(*options_.threads);
    if (!options_.WantsRun()) {
        if (painter_ != nullptr) painter_->PrepareForGo(0);
        int status = options_.save ? Save() : kDone;
        if (status == kDone && options_.png) status = WritePicture();
        return status == kDone ? ListEpochTree() : status;
    }
    if (options_.resume)
        Resume();
    else
        control_.UnPause();
    WaitForEnd();
    return WriteResults();
}

// The reports are written while the document may still be needed, the document at the end and
// whole.
std::optional<std::string> Runner::ClashingOutput() const {
    const bool isCsvFile = options_.csv && options_.csv != OutputFile::kStandardOutput;
    std::optional<std::string> csv = isCsvFile ? options_.csv : std::nullopt;
    const auto clashes = [this](const std::optional<std::string>& output,
                                const std::optional<std::string>& alsoWritten) {
        const std::optional<std::string> checkpoint =
            options_.checkpoint ? std::optional(options_.CheckpointPath()) : std::nullopt;
        for (const auto& other :
             {options_.document, options_.resume, options_.save, checkpoint, alsoWritten})
            if (output && other && IsSameFile(*output, *other)) return true;
        return false;
    };
    if (clashes(csv, std::nullopt)) return csv;
    if (clashes(options_.png, csv)) return options_.png;
    return std::nullopt;
}

// The new epoch is in place and its centre of mass where it belongs.
void Runner::RunStarting() {
    EpochPortal* const portal = document_.Portal();
    portal->WriteLock();
    if (options_.cutoff) Focus()->SetCutoff(*options_.cutoff);
    if (options_.order) Focus()->SetOrder(*options_.order);
    portal->WriteUnlock();
    if (Focus()->Order() < kScienceOrder)
        Note(FillIn(resources_.InterfaceLabel(kTextHistoricalOrder),
                    {std::to_string(Focus()->Order())}));

    start_ = TakeState(portal);
    run_.startTime = start_.time;
    run_.stopsAtCollision = options_.onCollision == Options::OnCollision::kStop;
    RunGoal& goal = run_.goal;
    goal.steps = options_.steps;
    if (options_.duration) goal.time = start_.time + *options_.duration;
    if (!goal.steps && !goal.time) goal.steps = Options::kDefaultSteps;
    document_.GetCalculator()->SetRunLimit(goal.steps.value_or(0),
                                           goal.time.value_or(kNoTimeLimit));
    BeginReports(start_);
}

void Runner::Resume() {
    isStartMeasured_ = true;
    BeginReports(TakeState(document_.Portal()));
    control_.ResumeRun();
}

void Runner::BeginReports(const SystemState& state) {
    if (options_.csv) {
        csv_ = std::make_unique<CsvWriter>(&csvFile_, state);
        recorder_.SetWriter(csv_.get(), &csvFile_, options_.every);
    }
    recorder_.Begin(state, run_.reports, run_.steps);
    begin_ = Clock::now();
}

void Runner::WaitForEnd() {
    Progress progress(resources_, !options_.quiet, run_.goal, run_.startTime, Focus()->TimeUval(),
                      run_.seconds);
    lastCheckpoint_ = begin_;
    while (HandleEvent(events_.Wait(Patience(progress)), &progress)) {
    }
    control_.Pause();
    touches_ = collisions_.Take();
    if (const auto ending = collisions_.TakeEnding()) ending_ = ending;
    seconds_ = Seconds();
}

// Milliseconds until something is to be done whatever happens.
std::optional<int> Runner::Patience(const Progress& progress) const {
    std::optional<int> patience;
    if (progress.IsShown()) patience = kProgressInterval;
    if (options_.checkpoint) {
        const double wait = 1e3 * std::max(*options_.checkpoint - SinceCheckpoint(), 0.0) + 1.0;
        const int untilDue = static_cast<int>(std::min(wait, kLongestWait));
        patience = std::min(patience.value_or(untilDue), untilDue);
    }
    return patience;
}

// False: the run is over.
bool Runner::HandleEvent(RunEvents::Event event, Progress* progress) {
    switch (event) {
        case RunEvents::Event::kTimeout:
            progress->Show(recorder_.Steps(), recorder_.Time());
            return !options_.checkpoint || SinceCheckpoint() < *options_.checkpoint ||
                   KeepCheckpoint(progress);
        case RunEvents::Event::kParked:
            return ResolveCollision(progress);
        case RunEvents::Event::kSignal:
            break;
    }
    if (options_.checkpoint) {
        control_.Rest();
        if (!document_.GetCalculator()->HasStoppedItself()) WriteCheckpoint();
    }
    return false;
}

// False: the run has ended by itself at this very moment. Then it stays at rest.
bool Runner::KeepCheckpoint(Progress* progress) {
    control_.Rest();
    events_.ForgetParking();
    if (!document_.GetCalculator()->HasStoppedItself())
        WriteCheckpoint();
    else if (!ResolveCollision(progress))
        return false;
    lastCheckpoint_ = Clock::now();
    control_.UnRest();
    return true;
}

// While the calculator is at rest. A run does not end because of a checkpoint that cannot be kept.
void Runner::WriteCheckpoint() {
    recorder_.WriteDue();
    static_cast<void>(csvFile_.Flush());
    BMessage record;
    DocumentError error = StoreRun(&record);
    if (!error.Failed()) error = WriteDocument(options_.CheckpointPath(), std::move(record));
    if (!error.Failed()) return;
    const std::string text = FillIn(resources_.InterfaceLabel(kTextNoCheckpoint),
                                    {options_.CheckpointPath(), error.Reason(resources_)});
    std::fwrite(text.data(), 1, text.size(), stderr);
}

// The document as Pause would leave it, and the run that goes on.
DocumentError Runner::StoreRun(BMessage* record) {
    static_cast<void>(StartConserved());
    RunRecord now = run_;
    now.steps = recorder_.Steps();
    now.reports = recorder_.Reports();
    now.seconds = Seconds();
    EpochPortal* const portal = document_.Portal();
    auto state = std::make_unique<BMessage>();
    portal->WriteLock();
    status_t status = document_.GetCalculator()->ArchiveRun(&now.calculator);
    if (status == B_OK) status = document_.GetCalculator()->Archive(state.get());
    Focus()->SetCalculatorState(state.release());
    Focus()->SetWriteable(false);
    portal->WriteUnlock();
    DocumentError error = DocumentError::Record(status);
    if (!error.Failed()) error = document_.Store(record, true);
    if (!error.Failed()) error = DocumentError::Record(now.AddTo(record));
    portal->WriteLock();
    Focus()->SetWriteable(true);
    portal->WriteUnlock();
    return error;
}

double Runner::SinceCheckpoint() const {
    return std::chrono::duration<double>(Clock::now() - lastCheckpoint_).count();
}

double Runner::Seconds() const {
    return run_.seconds + std::chrono::duration<double>(Clock::now() - begin_).count();
}

// Only when it is needed: it goes over all pairs.
const Conserved& Runner::StartConserved() {
    if (!isStartMeasured_) run_.start = MeasureConserved(start_);
    isStartMeasured_ = true;
    return run_.start;
}

// True when the run, which has stopped, goes on from bodies that have merged.
bool Runner::ResolveCollision(Progress* progress) {
    if (run_.stopsAtCollision) return false;
    const BMessage pairs = collisions_.Take();
    if (pairs.IsEmpty()) return false;
    const MergeResult result = controller_.Collide(
        pairs, [this](const MergeResult&) { recorder_.Resume(TakeState(document_.Portal())); });
    run_.mergers.Add(result);
    progress->Clear();
    const std::string unit = resources_.TimeUnits().Abbreviation(Focus()->TimeUval());
    for (const Merger& merger : result.mergers)
        Note(FillIn(resources_.InterfaceLabel(kTextMerger),
                    {merger.survivorName, merger.absorbedName,
                     RoundedText(merger.time / Focus()->TimeUval(), kTimeDigits), unit}));
    ending_ = result.unmerged;
    return !ending_;
}

int Runner::WriteResults() {
    recorder_.End(!touches_.IsEmpty());
    TellEnding();
    if (const int error = csvFile_.Close(); error != 0)
        return Fail(*options_.csv, std::strerror(error));
    if (options_.save)
        if (const int status = Save(); status != kDone) return status;
    // Of a run that was stopped it stays.
    if (options_.checkpoint && events_.Signal() == 0) unlink(options_.CheckpointPath().c_str());
    if (options_.png)
        if (const int status = WritePicture(); status != kDone) return status;
    if (const int status = Tell(); status != kDone) return status;
    if (const int status = ListEpochTree(); status != kDone) return status;
    return EndStatus();
}

// A run that could not go on is a failure, and told even to those who want no notes.
void Runner::TellEnding() {
    if (!ending_) return;
    const std::string text = FillIn(resources_.InterfaceLabel(kTextRunEnded),
                                    {RunEndingText(*ending_, document_.Portal(), resources_)});
    if (ending_->reason == RunEnding::Reason::kNothingInteracts)
        Note(text);
    else
        Print(text);
}

int Runner::EndStatus() const {
    if (events_.Signal() != 0) return kStoppedBySignal + events_.Signal();
    const bool couldGoOn = !ending_ || ending_->reason == RunEnding::Reason::kNothingInteracts;
    return couldGoOn ? kDone : kCouldNotGoOn;
}

int Runner::Save() {
    BMessage record;
    DocumentError error = document_.Store(&record, true);
    if (!error.Failed()) error = WriteDocument(*options_.save, std::move(record));
    return error.Failed() ? Fail(*options_.save, error.Reason(resources_)) : kDone;
}

DocumentError Runner::WriteDocument(const std::string& path, BMessage&& record) const {
    int leftovers = 0;
    DocumentError error = SimulationFile::Write(path, std::move(record), &leftovers);
    if (leftovers > 0)
        Note(FillIn(resources_.InterfaceLabel(kTextLeftovers), {std::to_string(leftovers), path}));
    return error;
}

int Runner::WritePicture() {
    const std::vector<std::byte> picture = painter_->Draw(options_);
    AtomicFile file;
    status_t status = file.Open(*options_.png);
    if (status == B_OK) {
        file.Write(picture.data(), picture.size());  // a failure shows in Commit
        status = file.Commit();
    }
    return status == B_OK ? kDone : FailPicture(file);
}

int Runner::FailPicture(const AtomicFile& file) const {
    return Fail(*options_.png, std::strerror(file.SystemError()));
}

int Runner::ListEpochTree() {
    if (!options_.epochs) return kDone;
    return PrintText(std::string(OutputFile::kStandardOutput), ListEpochs(&document_, resources_));
}

int Runner::Tell() {
    if (options_.quiet && !options_.json) return kDone;
    const RunSummary summary = Summarize();
    const std::string standardOutput(OutputFile::kStandardOutput);
    if (options_.json) return PrintText(standardOutput, summary.Json());
    // The reports have standard output for themselves.
    if (options_.csv == standardOutput) {
        Note(summary.Text(resources_));
        return kDone;
    }
    return PrintText(standardOutput, summary.Text(resources_));
}

RunSummary Runner::Summarize() {
    const SystemState end = TakeState(document_.Portal());
    RunSummary summary;
    summary.document = DocumentName();
    summary.epoch = Focus()->Name();
    summary.timeUval = Focus()->TimeUval();
    summary.timeUnit = resources_.TimeUnits().Abbreviation(summary.timeUval);
    summary.startTime = run_.startTime;
    summary.endTime = end.time;
    summary.steps = recorder_.Steps();
    summary.reports = recorder_.Reports();
    summary.seconds = seconds_;
    summary.bodies = end.CountBodies();
    summary.massiveBodies = end.CountMassive();
    summary.mergers = run_.mergers;
    summary.drift = MeasureDrift(StartConserved(), MeasureConserved(end), run_.mergers);
    summary.digest = DigestOf(end);
    int64 lighter = 0;
    int64 heavier = 0;
    for (int32 i = 0; touches_.FindInt64(CollisionMailbox::kLaterField, i, &lighter) == B_OK &&
                      touches_.FindInt64(CollisionMailbox::kEarlierField, i, &heavier) == B_OK;
         i++)
        summary.touches.push_back({lighter, heavier, end.NameOf(lighter), end.NameOf(heavier)});
    if (!summary.touches.empty())
        summary.ending = RunSummary::Ending::kCollision;
    else if (events_.Signal() != 0)
        summary.ending = RunSummary::Ending::kInterrupted;
    else if (ending_)
        summary.ending = EndingFor(ending_->reason);
    return summary;
}

int Runner::PrintText(const std::string& path, const std::string& text) {
    OutputFile out;
    int error = out.Open(path);
    if (error == 0) {
        out.Write(text);
        error = out.Close();
    }
    return error == 0 ? kDone : Fail(path, std::strerror(error));
}

int Runner::Fail(const std::string& file, const std::string& reason) const {
    const std::string text = FillIn(resources_.InterfaceLabel(kTextFailure), {file, reason});
    Print(text);
    return kCouldNot;
}

void Runner::Note(const std::string& text) const {
    if (!options_.quiet) Print(text);
}

void Runner::Print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
}
