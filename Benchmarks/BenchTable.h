// The table of results that the benchmark program prints, row by row as they come. Main thread.
#pragma once

#include <string>

#include "Platform/Support/SupportDefs.h"

class BenchTable {
public:
    void AddAtLeast(const std::string& what, double required, double measured, const char* unit);
    void AddAtMost(const std::string& what, double required, double measured, const char* unit);
    // A figure without a requirement.
    void AddFigure(const std::string& what, double measured, const char* unit);

    int32 CountRows() const { return rows_; }
    bool AllMet() const { return allMet_; }

private:
    void AddRow(const std::string& what, const std::string& required, const std::string& measured,
                const char* ok);

    int32 rows_ = 0;
    bool allMet_ = true;
};
