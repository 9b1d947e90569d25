// Writes reports as comma-separated values: a header, then one row for each body and report, bodies
// in mass order, SI units; control characters in names are written out, so that every row is a
// line. Numbers are the shortest that read back to the same bits. Used by one
// thread at a time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class OutputFile;
struct SystemState;

class CsvWriter {
public:
    static constexpr std::string_view kHeader = "report,time,id,name,x,y,z,vx,vy,vz\n";

    // `out` is not owned. Either WriteHeader or GoOnAfter comes first.
    CsvWriter(OutputFile* out, const SystemState& start);

    void WriteHeader();
    // The file holds reports already; this is its last row.
    void GoOnAfter(const std::string& lastRow) { row_ = lastRow; }

    // From now on reports are of these bodies.
    void SetBodies(const SystemState& state);

    // The last that was written, with its line end.
    [[nodiscard]] const std::string& LastRow() const { return row_; }

    // Positions and velocities: x, y, z of each body.
    void WriteReport(int64 report, double time, const double* positions, const double* velocities);

private:
    OutputFile* const out_;
    std::vector<std::string> bodies_;  // the id and name columns of each row
    std::string row_;
};
