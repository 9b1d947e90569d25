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
    // `report`: the number of the first one, which is of this state, after so many steps. Without a
    // file the recorder only counts, as it does where the file is for `states`, if not null.
    void Begin(RunRecorder* recorder, TimedStates* states, const SystemState& state,
               bool isBackwards, int64 report, int64 steps);
    // The file holds all reports until now that are due, safely; nothing where it is no file that
    // could be gone on with.
    [[nodiscard]] std::optional<ReportMark> Mark(RunRecorder* recorder);
    [[nodiscard]] int Close() { return file_.Close(); }

private:
    [[nodiscard]] int CheckMark(const std::string& path);

    OutputFile file_;
    std::unique_ptr<CsvWriter> writer_;
    std::optional<ReportMark> former_;  // what of the file stays
    std::optional<RunnerText> obstacle_;
    int64 every_ = 1;
};
