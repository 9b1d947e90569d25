// What this process holds of the system.
#pragma once

#include <iosfwd>

struct ProcessUse {
    int threads = 0;
    int descriptors = 0;
    bool operator==(const ProcessUse&) const = default;

    static ProcessUse Now();
};

std::ostream& operator<<(std::ostream& out, const ProcessUse& use);
// Which descriptors there are, one a line: for a report.
void PrintDescriptors(std::ostream& out);
