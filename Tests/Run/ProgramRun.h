// Runs the real program and keeps what it wrote, for the tests and the benchmarks.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

struct Outcome {
    int status = -1;  // exit status; -1 when a signal ended the program, or it was not run
    int signal = 0;
    std::string out;
    std::string err;
    long peakMemory = 0;  // KiB
};

struct RunSetup {
    // Called in the new process before the program starts: limits and the like.
    std::function<void()> prepare = {};
    // Called in this process while the program runs.
    std::function<void(pid_t program)> meanwhile = {};
};

// For `meanwhile`: waits for a moment; whether the program has not ended by then.
bool IsRunning(pid_t program);
Outcome RunProgram(const std::vector<std::string>& arguments, const RunSetup& setup = {});
// Another program, looked for where the shell would.
Outcome RunOther(const std::string& program, const std::vector<std::string>& arguments,
                 const RunSetup& setup = {});
