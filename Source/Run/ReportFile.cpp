#include "Run/ReportFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "Platform/Storage/FileDescriptor.h"
#include "Resources/Runner.h"
#include "Run/CsvWriter.h"
#include "Run/Options.h"
#include "Run/RunRecorder.h"
#include "Run/TimedStates.h"
#include "Simulation/Document/SystemState.h"

namespace {

bool HasAt(int descriptor, off_t at, std::string_view expected) {
    std::string found(expected.size(), '\0');
    const ssize_t size = pread(descriptor, found.data(), found.size(), at);
    return size == static_cast<ssize_t>(expected.size()) && found == expected;
}

}  // namespace

ReportFile::ReportFile() = default;
ReportFile::~ReportFile() = default;

int ReportFile::Open(const Options& options, const RunRecord& run) {
    if (!options.csv) return 0;
    every_ = options.every.value_or(run.reportFile ? run.reportFile->every : 1);
    if (const int error = file_.Open(*options.csv); error != 0) return error;
    if (!options.resume || file_.Size().value_or(0) == 0) return 0;
    former_ = run.reportFile;
    return CheckMark(*options.csv);
}

// The row before the mark tells the state of the run to the last bit: no other run's has the same.
int ReportFile::CheckMark(const std::string& path) {
    obstacle_ = kTextOtherReports;
    if (!former_) return 0;
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.IsOpen()) return errno;
    const auto rowAt =
        static_cast<off_t>(former_->size) - static_cast<off_t>(former_->lastRow.size());
    if (!HasAt(file.Get(), 0, CsvWriter::kHeader) || !HasAt(file.Get(), rowAt, former_->lastRow))
        return 0;
    obstacle_.reset();
    if (every_ != former_->every) obstacle_ = kTextOtherEvery;
    return 0;
}

void ReportFile::Begin(RunRecorder* recorder, TimedStates* states, const SystemState& state,
                       bool isBackwards, int64 report, int64 steps) {
    if (file_.IsOpen()) {
        writer_ = std::make_unique<CsvWriter>(&file_, state);
        if (states == nullptr) recorder->SetWriter(writer_.get(), &file_, every_);
    }
    if (former_) {
        file_.Keep(former_->size);
        writer_->GoOnAfter(former_->lastRow);
        recorder->GoOn(state, report, steps, former_->LastReport());
    } else {
        if (writer_ != nullptr) writer_->WriteHeader();
        if (states != nullptr) states->Begin(writer_.get(), state, isBackwards);
        recorder->Begin(state, report, steps);
    }
}

std::optional<ReportMark> ReportFile::Mark(RunRecorder* recorder) {
    recorder->WriteDue();
    if (writer_ == nullptr || file_.Sync() != 0) return std::nullopt;
    const std::optional<int64> size = file_.Size();
    if (!size) return std::nullopt;
    return ReportMark{*size, writer_->LastRow(), every_};
}
