#include "Run/RunEvents.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

#include "Model/Sharing/ChangeFlags.h"

namespace {

constexpr short kReadable = POLLIN;

constexpr int kStoppedBySignal = 128;

extern "C" void EndAtOnce(int signal) {
    _exit(kStoppedBySignal + signal);
}

// What a signal handler may look at.
volatile std::sig_atomic_t noted = 0;
const char* answer = nullptr;
std::size_t answerSize = 0;

extern "C" void NoteOrEnd(int signal) {
    if (noted != 0) EndAtOnce(signal);
    noted = signal;
    const int error = errno;
    static_cast<void>(!write(STDERR_FILENO, answer, answerSize));
    errno = error;
}

// The handler that has the text to answer, which must outlive it.
auto Prepared(int signal, const std::string& text) {
    noted = signal;
    answer = text.data();
    answerSize = text.size();
    return NoteOrEnd;
}

// One that is ignored, as those of a job in the background are, stays so.
void SetHandler(int signal, void (*handler)(int)) {
    if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

}  // namespace

RunEvents::Handling::Handling(const RunEvents& events, void (*handler)(int))
    : signals_(events.signals_) {
    SetHandler(SIGINT, handler);
    SetHandler(SIGTERM, handler);
    signals_.LetThrough();
}

RunEvents::Handling::~Handling() {
    signals_.Hold();
    SetHandler(SIGINT, SIG_DFL);
    SetHandler(SIGTERM, SIG_DFL);
}

RunEvents::NothingToLose::NothingToLose(const RunEvents& events) : handling_(events, EndAtOnce) {}

RunEvents::LastChance::LastChance(const RunEvents& events, std::string text)
    : text_(std::move(text)), handling_(events, Prepared(events.signal_, text_)) {}

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

int RunEvents::Signal() const {
    return signal_ != 0 ? signal_ : static_cast<int>(noted);
}

void RunEvents::ForgetParking() {
    eventfd_t count = 0;
    static_cast<void>(eventfd_read(parked_.Get(), &count));
}

void RunEvents::Wake() const {
    static_cast<void>(eventfd_write(parked_.Get(), 1));
}

void RunEvents::Changed(int32 what) {
    if (what == kEpochsTooDeep) wasTooDeep_ = true;
    if (what == kCalculatorParked) Wake();
}
