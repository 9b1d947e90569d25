// The file of a run's reports: a new one, or that of a run that is resumed, whose rows stay up to
// the checkpoint and are followed by those to come, as if the run had never stopped. Owned by the
// runner, and used on its thread while the calculator is parked.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Resources/Runner.h"
#include "Run/OutputFile.h"
#include "Run/RunRecord.h"

class CsvWriter;
class RunRecorder;
class TimedStates;
struct Options;
struct SystemState;

class ReportFile {
public:
    ReportFile();
    ~ReportFile();

    // 0, or the errno of what failed; so does Close. Changes nothing in a file that is there.
    [[nodiscard]] int Open(const Options& options, const RunRecord& run);
    // Of a resumed run, after Open: why the file that is there cannot be gone on with, if so.
    [[nodiscard]] std::optional<RunnerText> Obstacle() const { return obstacle_; }
    // What it is to hold: in place of reports the states at these times, or where steps end.
    [[nodiscard]] const std::vector<double>& Times() const { return mark_.times; }
    [[nodiscard]] bool AreSteps() const { return mark_.areSteps; }
    [[nodiscard]] int64 Every() const { return mark_.every; }
    // The run begins or goes on with this state, which is its last report by the record. Without a
    // file the recorder only counts, as it does where the file is for `states`, if not null.
    void Begin(RunRecorder* recorder, TimedStates* states, const SystemState& state,
               const RunRecord& run);
    // The file holds all reports until now that are due, safely; nothing where it is no file that
    // could be gone on with.
    [[nodiscard]] std::optional<ReportMark> Mark(RunRecorder* recorder);
    [[nodiscard]] int Close() { return file_.Close(); }

private:
    [[nodiscard]] int CheckMark(const Options& options, const ReportMark& former);

    OutputFile file_;
    std::unique_ptr<CsvWriter> writer_;
    bool isKept_ = false;  // the rows up to the mark stay
    ReportMark mark_;
    std::optional<RunnerText> obstacle_;
};
