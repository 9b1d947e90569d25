#include "Run/CsvWriter.h"

#include <charconv>

#include "Platform/Support/PrintableText.h"
#include "Run/OutputFile.h"
#include "Simulation/Document/SystemState.h"

namespace {

template <typename Number>
void AppendNumber(std::string* to, Number value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value);
    to->append(digits, end.ptr);
}

std::string Quoted(const std::string& name) {
    if (name.find_first_of(",\"") == std::string::npos) return name;
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

}  // namespace

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
        bodies_.push_back(',' + std::to_string(state.ids[i]) + ',' +
                          Quoted(Printable(state.names[i])));
}

void CsvWriter::WriteReport(int64 report, double time, const double* positions,
                            const double* velocities) {
    std::string moment;
    AppendNumber(&moment, report);
    moment += ',';
    AppendNumber(&moment, time);
    for (std::size_t i = 0; i < bodies_.size(); i++) {
        row_ = moment;
        row_ += bodies_[i];
        for (const double* triple : {positions + 3 * i, velocities + 3 * i}) {
            for (int k = 0; k < 3; k++) {
                row_ += ',';
                AppendNumber(&row_, triple[k]);
            }
        }
        row_ += '\n';
        out_->Write(row_);
    }
}
