#include "Benchmarks/BenchTable.h"

#include <cstdio>

namespace {

std::string Text(double value, const char* unit) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3g %s", value, unit);
    return text;
}

}  // namespace

void BenchTable::AddAtLeast(const std::string& what, double required, double measured,
                            const char* unit) {
    const bool met = measured >= required;
    allMet_ &= met;
    AddRow(what, ">= " + Text(required, unit), Text(measured, unit), met ? "yes" : "NO");
}

void BenchTable::AddAtMost(const std::string& what, double required, double measured,
                           const char* unit) {
    const bool met = measured <= required;
    allMet_ &= met;
    AddRow(what, "<= " + Text(required, unit), Text(measured, unit), met ? "yes" : "NO");
}

void BenchTable::AddFigure(const std::string& what, double measured, const char* unit) {
    AddRow(what, "", Text(measured, unit), "");
}

void BenchTable::AddRow(const std::string& what, const std::string& required,
                        const std::string& measured, const char* ok) {
    if (rows_++ == 0)
        std::printf("%-58s | %-12s | %-12s | %s\n", "what", "required", "measured", "ok");
    std::printf("%-58s | %-12s | %-12s | %s\n", what.c_str(), required.c_str(), measured.c_str(),
                ok);
    std::fflush(stdout);
}
