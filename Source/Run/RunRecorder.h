// Takes the reports of a run: counts them and their steps, and writes those that are asked for.
// Works on the calculation thread, which waits meanwhile; owned by the runner, which calls Begin
// and End and asks for more only while the calculator is parked. Steps, Reports and Time may be
// asked for at any time.
#pragma once

#include <atomic>
#include <vector>

#include "Calculation/ReportConsumer.h"

class Calculator;
class CsvWriter;
class OutputFile;
struct SystemState;

class RunRecorder final : public ReportConsumer {
public:
    explicit RunRecorder(Calculator* calculator);

    // From Begin on every `every`-th report goes to the writer, and End adds the last one.
    void SetWriter(CsvWriter* writer, const OutputFile* out, int64 every);

    // Report 0; or, of a run that was taken up, that number after so many steps.
    void Begin(const SystemState& start, int64 report = 0, int64 steps = 0);
    // The run is at that report, after so many steps; the last one that the writer has had is
    // `written`.
    void GoOn(const SystemState& state, int64 report, int64 steps, int64 written);
    // Hands the writer what is due until now.
    void WriteDue();
    // Bodies have merged; `merged` is what goes on from the time of the last report. That report,
    // if it is due, still shows them apart.
    void Resume(const SystemState& merged);
    // The run is over. A run that ended in a collision has reported its last state twice.
    void End(bool collided);

    [[nodiscard]] int64 Steps() const { return steps_; }
    [[nodiscard]] int64 Reports() const { return reports_; }
    [[nodiscard]] double Time() const { return time_; }  // s

    void PrepareForGo(int32) override {}
    void ReadData(int32 count, double* times, double* positions, double* velocities) override;
    void ReadOk() override;

private:
    void Write(int64 report, double time, const double* positions, const double* velocities);
    void WriteHeldIfDue();
    void WriteBatch(int32 count, const double* times, const double* positions,
                    const double* velocities);

    Calculator* const calculator_;
    CsvWriter* writer_ = nullptr;
    const OutputFile* out_ = nullptr;
    int64 every_ = 1;
    std::size_t stride_ = 0;  // doubles of one report's positions
    int64 stepsBefore_ = 0;   // of the run, less those of the calculator
    std::atomic<int64> steps_ = 0;
    std::atomic<int64> reports_ = 0;
    std::atomic<double> time_ = 0.0;
    bool repeats_ = false;  // the last report is at the time of the one before
    int64 written_ = 0;     // the last report written
    // The last report of a batch is held back: it may turn out to be the last of all.
    std::vector<double> heldPositions_;
    std::vector<double> heldVelocities_;
};
