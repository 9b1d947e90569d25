#include "Tests/Run/ProgramRun.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

namespace {

[[noreturn]] void StartProgram(std::string program, std::vector<std::string> arguments,
                               const RunSetup& setup, int out, int err) {
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null", 1);
    if (setup.prepare) setup.prepare();
    std::vector<char*> argv{program.data()};
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    execvp(program.c_str(), argv.data());
    _exit(127);
}

std::string TakeContents(int file) {
    std::ifstream in("/proc/self/fd/" + std::to_string(file), std::ios::binary);
    close(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

bool IsRunning(pid_t program) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(program), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
}

Outcome RunProgram(const std::vector<std::string>& arguments, const RunSetup& setup) {
    return RunOther(ORVEK_RUN, arguments, setup);
}

Outcome RunOther(const std::string& program, const std::vector<std::string>& arguments,
                 const RunSetup& setup) {
    // Files and not pipes: the program never waits for somebody to read.
    const int out = memfd_create("out", MFD_CLOEXEC);
    const int err = memfd_create("err", MFD_CLOEXEC);
    // What this process has in memory when it forks counts for the program's peak.
    malloc_trim(0);
    const pid_t process = fork();
    if (process == 0) StartProgram(program, arguments, setup, out, err);
    if (setup.meanwhile) setup.meanwhile(process);
    int status = 0;
    rusage usage{};
    Outcome outcome;
    if (wait4(process, &status, 0, &usage) != process) return outcome;
    if (WIFEXITED(status)) outcome.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
    outcome.out = TakeContents(out);
    outcome.err = TakeContents(err);
    outcome.peakMemory = usage.ru_maxrss;
    return outcome;
}
