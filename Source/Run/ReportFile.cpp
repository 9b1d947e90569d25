#include "Run/ReportFile.h"

#include "Resources/Runner.h"
#include "Run/CsvWriter.h"
#include "Run/KeptRows.h"
#include "Run/Options.h"
#include "Run/RunRecorder.h"
#include "Run/TimedStates.h"
#include "Simulation/Document/SystemState.h"

ReportFile::ReportFile() = default;
ReportFile::~ReportFile() = default;

int ReportFile::Open(const Options& options, const RunRecord& run) {
    if (!options.csv) return 0;
    // What was chosen when the run began holds where nothing else is said.
    if (run.reportFile) mark_ = *run.reportFile;
    mark_.every = options.every.value_or(mark_.every);
    if (!options.at.empty()) mark_.times = TimedStates::Rising(options.at);
    mark_.areSteps |= options.stepTimes;
    if (const int error = file_.Open(*options.csv); error != 0) return error;
    if (!options.resume || file_.Size().value_or(0) == 0) return 0;
    obstacle_ = kTextOtherReports;
    return run.reportFile ? CheckMark(options, *run.reportFile) : 0;
}

int ReportFile::CheckMark(const Options& options, const ReportMark& former) {
    if (const int error =
            FindKeptRows(*options.csv, CsvWriter::kHeader, former.size, former.lastRow, &isKept_);
        error != 0)
        return error;
    if (!isKept_) return 0;
    obstacle_.reset();
    if (mark_.every != former.every) obstacle_ = kTextOtherEvery;
    if (mark_.times != former.times || mark_.areSteps != former.areSteps)
        obstacle_ = kTextOtherStates;
    return 0;
}

void ReportFile::Begin(RunRecorder* recorder, TimedStates* states, const SystemState& state,
                       const RunRecord& run) {
    if (file_.IsOpen()) {
        writer_ = std::make_unique<CsvWriter>(&file_, state);
        if (states == nullptr) recorder->SetWriter(writer_.get(), &file_, mark_.every);
    }
    if (isKept_) {
        file_.Keep(mark_.size);
        writer_->GoOnAfter(mark_.lastRow);
        if (states != nullptr) states->GoOn(writer_.get(), state, run);
        recorder->GoOn(state, run.reports, run.steps, mark_.LastReport());
    } else {
        if (writer_ != nullptr) writer_->WriteHeader();
        if (states != nullptr) states->Begin(writer_.get(), state, run);
        recorder->Begin(state, run.reports, run.steps);
    }
}

std::optional<ReportMark> ReportFile::Mark(RunRecorder* recorder) {
    recorder->WriteDue();
    if (writer_ == nullptr || file_.Sync() != 0) return std::nullopt;
    const std::optional<int64> size = file_.Size();
    if (!size) return std::nullopt;
    return ReportMark{*size, writer_->LastRow(), mark_.every, mark_.times, mark_.areSteps};
}
