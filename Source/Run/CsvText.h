// Numbers and names as comma-separated values have them. No state.
#pragma once

#include <string>

#include "Platform/Support/SupportDefs.h"

// The shortest that reads back to the same bits.
void AppendCsv(std::string* to, double number);
void AppendCsv(std::string* to, int64 number);
// In quotes where it must be; control characters are written out, so that a row is a line.
[[nodiscard]] std::string CsvName(const std::string& name);
