#include "Run/RunRecorder.h"

#include "Calculation/Calculator.h"
#include "Run/CsvWriter.h"
#include "Run/OutputFile.h"
#include "Simulation/Document/SystemState.h"

RunRecorder::RunRecorder(Calculator* calculator) : calculator_(calculator) {
    // Ready for the first batch.
    release_ben(calculator_->WriteOk());
}

void RunRecorder::SetWriter(CsvWriter* writer, const OutputFile* out, int64 every) {
    writer_ = writer;
    out_ = out;
    every_ = every;
}

void RunRecorder::Begin(const SystemState& start, int64 report, int64 steps) {
    GoOn(start, report, steps, report);
    if (writer_ != nullptr)
        Write(report, start.time, heldPositions_.data(), heldVelocities_.data());
}

void RunRecorder::GoOn(const SystemState& state, int64 report, int64 steps, int64 written) {
    time_ = state.time;
    steps_ = steps;
    stepsBefore_ = steps - calculator_->StepsTaken();
    reports_ = report;
    written_ = written;
    stride_ = state.positions.size();
    if (writer_ == nullptr) return;
    heldPositions_ = state.positions;
    heldVelocities_ = state.velocities;
}

void RunRecorder::WriteDue() {
    if (writer_ != nullptr) WriteHeldIfDue();
}

void RunRecorder::Resume(const SystemState& merged) {
    if (repeats_) reports_--;
    stride_ = merged.positions.size();
    if (writer_ == nullptr) return;
    WriteHeldIfDue();
    writer_->SetBodies(merged);
    heldPositions_ = merged.positions;
    heldVelocities_ = merged.velocities;
}

void RunRecorder::End(bool collided) {
    if (collided && repeats_) reports_--;
    if (writer_ != nullptr && written_ != reports_)
        Write(reports_, time_, heldPositions_.data(), heldVelocities_.data());
}

void RunRecorder::Write(int64 report, double time, const double* positions,
                        const double* velocities) {
    writer_->WriteReport(report, time, positions, velocities);
    written_ = report;
}

void RunRecorder::WriteHeldIfDue() {
    if (reports_ % every_ == 0 && written_ != reports_)
        Write(reports_, time_, heldPositions_.data(), heldVelocities_.data());
}

void RunRecorder::WriteBatch(int32 count, const double* times, const double* positions,
                             const double* velocities) {
    WriteHeldIfDue();
    const auto last = static_cast<std::size_t>(count - 1);
    for (std::size_t k = 0; k < last; k++) {
        const int64 report = reports_ + static_cast<int64>(k) + 1;
        if (report % every_ == 0)
            Write(report, times[k], positions + k * stride_, velocities + k * stride_);
    }
    heldPositions_.assign(positions + last * stride_, positions + (last + 1) * stride_);
    heldVelocities_.assign(velocities + last * stride_, velocities + (last + 1) * stride_);
    // Nobody can read what would follow.
    if (out_->Error() != 0) calculator_->SetInternalPause();
}

void RunRecorder::ReadData(int32 count, double* times, double* positions, double* velocities) {
    if (count == 0) return;
    if (writer_ != nullptr) WriteBatch(count, times, positions, velocities);
    reports_ += count;
    steps_ = stepsBefore_ + calculator_->StepsTaken();
    repeats_ = times[count - 1] == (count > 1 ? times[count - 2] : time_.load());
    time_ = times[count - 1];
}

void RunRecorder::ReadOk() {
    release_ben(calculator_->WriteOk());
}
