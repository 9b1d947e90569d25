// The bodies of an epoch as comma-separated values that CsvBodies reads back to the same bits: SI
// units, masses as GM. No state; under the lock of the epoch.
#pragma once

#include <string>

class AbEpoch;

[[nodiscard]] std::string BodiesAsCsv(const AbEpoch& epoch);
// A comma and the shortest digits that mean these bits.
void AppendCsvNumber(std::string* to, double number);
// In quotation marks. A body without a name needs one there.
[[nodiscard]] std::string QuotedCsvName(const std::string& name);
