#include "Application/EndSignals.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};
constexpr int kPatienceMilliseconds = 10'000;

// As by nohup.
bool IsIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

EndSignals::EndSignals() {
    sigemptyset(&signals_);
    for (const int signal : kSignals)
        if (!IsIgnored(signal)) sigaddset(&signals_, signal);
    pthread_sigmask(SIG_BLOCK, &signals_, &formerMask_);
    // A reader of our outputs that goes away and a file that may not grow are errors of writing,
    // not the program's end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

EndSignals::~EndSignals() {
    if (thread_.joinable()) {
        static_cast<void>(eventfd_write(stop_.Get(), 1));
        thread_.join();
    }
    pthread_sigmask(SIG_SETMASK, &formerMask_, nullptr);
}

void EndSignals::LetThrough() const {
    pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
}

void EndSignals::Hold() const {
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
}

void EndSignals::Watch(const BMessenger& application) {
    arrivals_ = FileDescriptor(signalfd(-1, &signals_, SFD_CLOEXEC));
    stop_ = FileDescriptor(eventfd(0, EFD_CLOEXEC));
    thread_ = std::thread([this, application] { Wait(application); });
}

int EndSignals::Next(int milliseconds) const {
    pollfd events[] = {{stop_.Get(), POLLIN, 0}, {arrivals_.Get(), POLLIN, 0}};
    while (poll(events, std::size(events), milliseconds) < 0)
        if (errno != EINTR) return 0;
    signalfd_siginfo signal{};
    if (events[0].revents != 0 || events[1].revents == 0 ||
        read(arrivals_.Get(), &signal, sizeof signal) != sizeof signal)
        return 0;
    return static_cast<int>(signal.ssi_signo);
}

void EndSignals::Wait(const BMessenger& application) const {
    constexpr int kExitBySignal = 128;
    const int first = Next(-1);
    if (first == 0) return;
    WindowServer::Deliver(application, BMessage(B_SESSION_ENDING));
    const int second = Next(kPatienceMilliseconds);
    pollfd stop{stop_.Get(), POLLIN, 0};
    if (second == 0 && poll(&stop, 1, 0) > 0) return;
    std::_Exit(kExitBySignal + first);
}
