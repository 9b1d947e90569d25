#include "Application/SessionEnd.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <cstdlib>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/EndSignals.h"

namespace {

constexpr int kPatienceMilliseconds = 10'000;

}  // namespace

SessionEnd::~SessionEnd() {
    if (thread_.joinable()) {
        static_cast<void>(eventfd_write(stop_.Get(), 1));
        thread_.join();
    }
    signals_.LetThrough();
}

void SessionEnd::Watch(const BMessenger& application) {
    stop_ = FileDescriptor(eventfd(0, EFD_CLOEXEC));
    thread_ = std::thread([this, application] { Wait(application); });
}

int SessionEnd::Next(int milliseconds) const {
    pollfd events[] = {{stop_.Get(), POLLIN, 0}, {signals_.Descriptor(), POLLIN, 0}};
    while (poll(events, std::size(events), milliseconds) < 0)
        if (errno != EINTR) return 0;
    return events[0].revents != 0 || events[1].revents == 0 ? 0 : signals_.Take();
}

void SessionEnd::Wait(const BMessenger& application) const {
    constexpr int kExitBySignal = 128;
    const int first = Next(-1);
    if (first == 0) return;
    WindowServer::Deliver(application, BMessage(B_SESSION_ENDING));
    const int second = Next(kPatienceMilliseconds);
    pollfd stop{stop_.Get(), POLLIN, 0};
    if (second == 0 && poll(&stop, 1, 0) > 0) return;
    std::_Exit(kExitBySignal + first);
}
