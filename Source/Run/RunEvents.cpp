#include "Run/RunEvents.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "Model/Sharing/ChangeFlags.h"

namespace {

constexpr short kReadable = POLLIN;

constexpr int kStoppedBySignal = 128;

extern "C" void EndAtOnce(int signal) {
    _exit(kStoppedBySignal + signal);
}

// One that is ignored, as those of a job in the background are, stays so.
void SetHandler(int signal, void (*handler)(int)) {
    if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

}  // namespace

RunEvents::NothingToLose::NothingToLose(const RunEvents& events) : signals_(events.signals_) {
    SetHandler(SIGINT, EndAtOnce);
    SetHandler(SIGTERM, EndAtOnce);
    signals_.LetThrough();
}

RunEvents::NothingToLose::~NothingToLose() {
    signals_.Hold();
    SetHandler(SIGINT, SIG_DFL);
    SetHandler(SIGTERM, SIG_DFL);
}

RunEvents::RunEvents()
    : parked_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), signals_({SIGINT, SIGTERM}) {}

RunEvents::Event RunEvents::Wait(std::optional<int> milliseconds) {
    pollfd sources[] = {{parked_.Get(), kReadable, 0}, {signals_.Descriptor(), kReadable, 0}};
    int ready = -1;
    do {
        ready = poll(sources, 2, milliseconds.value_or(-1));
    } while (ready < 0 && errno == EINTR);
    if ((sources[0].revents & kReadable) != 0) {
        ForgetParking();
        return Event::kParked;
    }
    if ((sources[1].revents & kReadable) == 0) return Event::kTimeout;
    signal_ = signals_.Take();
    signals_.LetThrough();
    return Event::kSignal;
}

void RunEvents::ForgetParking() {
    eventfd_t count = 0;
    static_cast<void>(eventfd_read(parked_.Get(), &count));
}

void RunEvents::Changed(int32 what) {
    if (what == kCalculatorParked) static_cast<void>(eventfd_write(parked_.Get(), 1));
}
