#include "ProgramRun.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

// Temporary files and not pipes: the program never waits for somebody to read.
File TemporaryFile() {
    File file(std::tmpfile());
    if (file == nullptr) {
        std::perror("tmpfile");
        std::abort();
    }
    return file;
}

std::string Contents(FILE* file) {
    std::string text;
    std::rewind(file);
    char buffer[4096];
    for (std::size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
        text.append(buffer, got);
    return text;
}

[[noreturn]] void StartProgram(std::vector<std::string> arguments, const RunSetup& setup, int out,
                               int err) {
    if (setup.outFile) out = open(setup.outFile->c_str(), O_WRONLY);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    if (setup.prepare) setup.prepare();
    std::string program = ORVEK_RUN;
    std::vector<char*> argv{program.data()};
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    execv(ORVEK_RUN, argv.data());
    _exit(127);
}

}  // namespace

Outcome RunProgram(const std::vector<std::string>& arguments, const RunSetup& setup) {
    const File out = TemporaryFile();
    const File err = TemporaryFile();
    const pid_t program = fork();
    if (program == 0) StartProgram(arguments, setup, fileno(out.get()), fileno(err.get()));
    if (setup.meanwhile) setup.meanwhile(program);
    int status = 0;
    rusage usage{};
    Outcome outcome;
    if (wait4(program, &status, 0, &usage) != program) return outcome;
    if (WIFEXITED(status)) outcome.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
    outcome.out = Contents(out.get());
    outcome.err = Contents(err.get());
    outcome.peakMemory = usage.ru_maxrss;
    return outcome;
}
