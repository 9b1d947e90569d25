#include "Platform/Kernel/EndSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace {

bool IsIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

std::vector<int> EndSignals::NotIgnored(std::vector<int> signals) {
    std::erase_if(signals, IsIgnored);
    return signals;
}

EndSignals::EndSignals(const std::vector<int>& signals) {
    sigemptyset(&signals_);
    for (const int signal : signals)
        sigaddset(&signals_, signal);
    Hold();
    arrivals_ = FileDescriptor(signalfd(-1, &signals_, SFD_CLOEXEC | SFD_NONBLOCK));
    // A reader of our outputs that goes away and a file that may not grow are errors of writing,
    // not the program's end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void EndSignals::LetThrough() const {
    pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
}

void EndSignals::Hold() const {
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
}

int EndSignals::Take() const {
    signalfd_siginfo signal{};
    return read(arrivals_.Get(), &signal, sizeof signal) == sizeof signal
               ? static_cast<int>(signal.ssi_signo)
               : 0;
}
