#include "Run/CsvWriter.h"

#include "Run/CsvText.h"
#include "Run/OutputFile.h"
#include "Simulation/Document/SystemState.h"

CsvWriter::CsvWriter(OutputFile* out, const SystemState& start) : out_(out) {
    SetBodies(start);
}

void CsvWriter::WriteHeader() {
    out_->Write(kHeader);
}

void CsvWriter::SetBodies(const SystemState& state) {
    bodies_.clear();
    bodies_.reserve(state.CountBodies());
    for (std::size_t i = 0; i < state.CountBodies(); i++)
        bodies_.push_back(',' + std::to_string(state.ids[i]) + ',' + CsvName(state.names[i]));
}

void CsvWriter::WriteReport(int64 report, double time, const double* positions,
                            const double* velocities) {
    std::string moment;
    AppendCsv(&moment, report);
    moment += ',';
    AppendCsv(&moment, time);
    for (std::size_t i = 0; i < bodies_.size(); i++) {
        row_ = moment;
        row_ += bodies_[i];
        for (const double* triple : {positions + 3 * i, velocities + 3 * i}) {
            for (int k = 0; k < 3; k++) {
                row_ += ',';
                AppendCsv(&row_, triple[k]);
            }
        }
        row_ += '\n';
        out_->Write(row_);
    }
}
