#include "Tests/Platform/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {

constexpr int kNotStarted = 127;

constexpr const char* kBus = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kDeadBus = "unix:path=/dev/null";

// "NAME=value" of all that the program shall see.
std::vector<std::string> Merge(ChildProcess::Environment changes) {
    changes.emplace(kBus, kDeadBus);
    std::vector<std::string> lines;
    for (char** line = environ; *line != nullptr; line++) {
        const std::string text = *line;
        if (!changes.contains(text.substr(0, text.find('=')))) lines.push_back(text);
    }
    for (const auto& [name, value] : changes)
        if (value) lines.push_back(name + '=' + *value);
    return lines;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Between fork and exec, where little is allowed.
[[noreturn]] void Become(char** arguments, char** variables, const char* output) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int out = open(output, O_WRONLY | O_CREAT | O_APPEND, 0666);
    dup2(out, STDOUT_FILENO);
    dup2(out, STDERR_FILENO);
    execvpe(arguments[0], arguments, variables);
    _exit(kNotStarted);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments,
                           const Environment& environment, const std::string& output) {
    std::vector<std::string> words = arguments;
    std::vector<std::string> variables = Merge(environment);
    const std::vector<char*> argv = Pointers(words);
    const std::vector<char*> envp = Pointers(variables);
    const char* const out = output.empty() ? "/dev/null" : output.c_str();
    id_ = fork();
    if (id_ == 0) Become(const_cast<char**>(argv.data()), const_cast<char**>(envp.data()), out);
    handle_ = static_cast<int>(syscall(SYS_pidfd_open, id_, 0));
}

ChildProcess::~ChildProcess() {
    if (IsRunning()) {
        Signal(SIGKILL);
        waitpid(id_, nullptr, 0);
    }
    close(handle_);
}

void ChildProcess::Signal(int signal) const {
    if (id_ > 0 && !ending_) kill(id_, signal);
}

std::optional<ChildProcess::Ending> ChildProcess::Wait(Duration patience) {
    if (ending_ || id_ < 0) return ending_;
    pollfd handle{handle_, POLLIN, 0};
    if (poll(&handle, 1, static_cast<int>(patience.count())) != 1) return std::nullopt;
    int status = 0;
    waitpid(id_, &status, 0);
    ending_ = Ending{};
    if (WIFEXITED(status)) ending_->status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) ending_->signal = WTERMSIG(status);
    return ending_;
}
