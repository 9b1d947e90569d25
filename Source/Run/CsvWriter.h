// Writes reports as comma-separated values: a header, then one row for each body and report, bodies
// in mass order, SI units; control characters in names are written out, so that every row is a
// line. Numbers are the shortest that read back to the same bits. Used by one
// thread at a time.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class OutputFile;
struct SystemState;

class CsvWriter {
public:
    // `out` is not owned.
    CsvWriter(OutputFile* out, const SystemState& start);

    // From now on reports are of these bodies.
    void SetBodies(const SystemState& state);

    // Positions and velocities: x, y, z of each body.
    void WriteReport(int64 report, double time, const double* positions, const double* velocities);

private:
    OutputFile* const out_;
    std::vector<std::string> bodies_;  // the id and name columns of each row
    std::string row_;
};
