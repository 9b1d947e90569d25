#include "Run/Sweep/Sweep.h"

#include <cstring>
#include <span>
#include <vector>

#include "Calculation/Ranks.h"
#include "Resources/CommonTexts.h"
#include "Resources/Runner.h"
#include "Resources/Sweep.h"
#include "Run/NumberText.h"
#include "Run/Options.h"
#include "Run/OutputClash.h"
#include "Run/Sweep/SweepFile.h"
#include "Run/Sweep/SweepJob.h"
#include "Run/Sweep/SweepProgress.h"
#include "Run/Sweep/SweepRun.h"
#include "Run/Sweep/SweepTeam.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RecordDigest.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kStoppedBySignal = 128;
constexpr int kProgressInterval = 200;  // ms
// How soon lines of other ranks are seen.
constexpr int kRankInterval = 5;  // ms
constexpr std::size_t kMarkBytes = 8;

}  // namespace

Sweep::Sweep(const Options& options, const ProgramResources& resources, Ranks* ranks)
    : options_(options), resources_(resources), ranks_(ranks), output_(options, resources) {}

int Sweep::Run() {
    int status = Prepare();
    const std::string path = options_.csv.value_or(std::string(OutputFile::kStandardOutput));
    SweepFile file(
        plan_, "run," + plan_.FieldColumns() + SweepRun::HeadColumns(options_) + ",sweep", Mark());
    if (status == RunnerOutput::kDone) status = Open(&file, path);
    const bool isToBeMade = status == RunnerOutput::kDone;
    if (ranks_ != nullptr)
        SweepJob::Tell(ranks_, plan_, isToBeMade ? &record_ : nullptr, file.CountWritten());
    if (!isToBeMade) return status;
    status = MakeRuns(&file, path);
    if (const int error = file.Close(); error != 0)
        status = output_.Fail(path, std::strerror(error));
    if (status != RunnerOutput::kDone && ranks_ != nullptr) ranks_->Abort(status);
    return status;
}

int Sweep::Open(SweepFile* file, const std::string& path) {
    if (const int error = file->Open(path); error != 0)
        return output_.Fail(path, std::strerror(error));
    if (const auto obstacle = file->Obstacle())
        return output_.Fail(path, resources_.InterfaceLabel(*obstacle));
    return RunnerOutput::kDone;
}

int Sweep::Prepare() {
    const RunEvents::NothingToLose nothingToLose(events_);
    if (const auto wrong = plan_.Read(options_, resources_))
        return output_.Fail(DocumentName(), *wrong);
    if (const auto output = FindClashingOutput(options_))
        return output_.Fail(*output, resources_.InterfaceLabel(kTextSameFile));
    if (const int status = ReadDocument(); status != RunnerOutput::kDone) return status;
    return CheckValues();
}

std::string Sweep::DocumentName() const {
    return options_.document.value_or(resources_.InterfaceLabel(kLabelUntitled));
}

int Sweep::ReadDocument() {
    record_ = resources_.NewSimulation();
    if (options_.document)
        if (const auto error = SimulationFile::Read(*options_.document, &record_); error.Failed())
            return output_.Fail(DocumentName(), error.Reason(resources_));
    SimulationDocument document(nullptr);
    if (const DocumentError error = document.Load(record_); error.Failed())
        return output_.Fail(DocumentName(), error.Reason(resources_));
    for (const std::string& notice : document.Notices().Lines(resources_))
        static_cast<void>(output_.Fail(DocumentName(), notice));
    return RunnerOutput::kDone;
}

int Sweep::CheckValues() const {
    for (const int64 run : plan_.RunsWithAllValues())
        if (const auto wrong = SweepRun(options_, resources_).Prepare(record_, plan_.EditsOf(run)))
            return output_.Fail(DocumentName(), *wrong);
    return RunnerOutput::kDone;
}

int Sweep::MakeRuns(SweepFile* file, const std::string& path) {
    SweepProgress progress(resources_, !options_.quiet, file->CountWritten(), plan_.CountRuns());
    if (file->CountWritten() > 0) progress.TellKept();
    const int64 stride = ranks_ != nullptr ? ranks_->Count() : 1;
    SweepTeam team({options_, resources_, plan_, record_}, file->CountWritten(), stride, &events_);
    while (file->CountWritten() < plan_.CountRuns()) {
        const int patience = stride > 1 ? kRankInterval : kProgressInterval;
        if (events_.Wait(patience) == RunEvents::Event::kSignal)
            return kStoppedBySignal + events_.Signal();
        std::vector<SweepTeam::Line> lines = team.TakeDone();
        while (auto line = stride > 1 ? SweepJob::Take(ranks_) : std::nullopt)
            lines.push_back(std::move(*line));
        for (SweepTeam::Line& line : lines) {
            progress.AddOne();
            if (const int error = file->Write(line.run, std::move(line.columns)); error != 0)
                return output_.Fail(path, std::strerror(error));
        }
        progress.Show();
    }
    return RunnerOutput::kDone;
}

// Lines with the same mark are of the same document and came about in the same way.
std::string Sweep::Mark() const {
    std::string text;
    const auto add = [&text](const auto& value) {
        (text += value ? ExactText(static_cast<double>(*value)) : "") += '\n';
    };
    add(options_.steps);
    add(options_.duration);
    add(options_.cutoff);
    add(options_.order);
    add(options_.onCollision);
    text += options_.until.value_or("") + '\n';
    for (const std::string& edit : options_.edits)
        text += edit + '\n';
    std::vector<std::byte> document;
    static_cast<void>(record_.Flatten(&document));
    RecordDigest digest;
    digest.Add(std::as_bytes(std::span(text)));
    digest.Add(document);
    std::string mark = ",";
    constexpr std::string_view kDigits = "0123456789abcdef";
    const RecordDigest::Bytes bytes = digest.End();
    for (std::size_t i = 0; i < kMarkBytes; i++) {
        mark += kDigits[std::to_integer<std::size_t>(bytes[i] >> 4)];
        mark += kDigits[std::to_integer<std::size_t>(bytes[i] & std::byte{15})];
    }
    return mark;
}
