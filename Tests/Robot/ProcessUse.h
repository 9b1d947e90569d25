// What this process holds of the system.
#pragma once

#include <cstddef>
#include <iosfwd>

struct ProcessUse {
    int threads = 0;
    int descriptors = 0;
    std::size_t heap = 0;  // bytes that were allocated and not freed

    static ProcessUse Now();
};

// Waits, some seconds at most, until no more threads run than these: one that has been waited for
// may still be listed.
void AwaitThreads(int most);

std::ostream& operator<<(std::ostream& out, const ProcessUse& use);
// Which threads and descriptors there are, one a line: for a report.
void PrintHeld(std::ostream& out);
