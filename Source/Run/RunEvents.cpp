#include "Run/RunEvents.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

#include "Model/Sharing/ChangeFlags.h"

namespace {

constexpr short kReadable = POLLIN;

sigset_t StopSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

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

void SetMask(int how) {
    const sigset_t stop = StopSignals();
    pthread_sigmask(how, &stop, nullptr);
}

// One that is ignored, as those of a job in the background are, stays so.
void SetHandler(int signal, void (*handler)(int)) {
    if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

}  // namespace

RunEvents::NothingToLose::NothingToLose() {
    SetHandler(SIGINT, EndAtOnce);
    SetHandler(SIGTERM, EndAtOnce);
    SetMask(SIG_UNBLOCK);
}

RunEvents::NothingToLose::~NothingToLose() {
    SetMask(SIG_BLOCK);
    SetHandler(SIGINT, SIG_DFL);
    SetHandler(SIGTERM, SIG_DFL);
}

RunEvents::LastChance::LastChance(const RunEvents& events, std::string text)
    : text_(std::move(text)) {
    noted = events.signal_;
    answer = text_.data();
    answerSize = text_.size();
    SetHandler(SIGINT, NoteOrEnd);
    SetHandler(SIGTERM, NoteOrEnd);
    SetMask(SIG_UNBLOCK);
}

RunEvents::LastChance::~LastChance() {
    SetMask(SIG_BLOCK);
    SetHandler(SIGINT, SIG_DFL);
    SetHandler(SIGTERM, SIG_DFL);
}

RunEvents::RunEvents() : parked_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    const sigset_t stop = StopSignals();
    pthread_sigmask(SIG_BLOCK, &stop, nullptr);
    signals_ = signalfd(-1, &stop, SFD_CLOEXEC);
    // A reader that goes away and a file that may not grow are errors of writing, not the program's
    // end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

RunEvents::~RunEvents() {
    close(parked_);
    close(signals_);
}

RunEvents::Event RunEvents::Wait(std::optional<int> milliseconds) {
    pollfd sources[] = {{parked_, kReadable, 0}, {signals_, kReadable, 0}};
    int ready = -1;
    do {
        ready = poll(sources, 2, milliseconds.value_or(-1));
    } while (ready < 0 && errno == EINTR);
    if ((sources[0].revents & kReadable) != 0) {
        ForgetParking();
        return Event::kParked;
    }
    if ((sources[1].revents & kReadable) == 0) return Event::kTimeout;
    TakeSignal();
    return Event::kSignal;
}

int RunEvents::Signal() const {
    return signal_ != 0 ? signal_ : static_cast<int>(noted);
}

void RunEvents::ForgetParking() {
    eventfd_t count = 0;
    static_cast<void>(eventfd_read(parked_, &count));
}

void RunEvents::TakeSignal() {
    signalfd_siginfo info{};
    if (read(signals_, &info, sizeof info) == sizeof info)
        signal_ = static_cast<int>(info.ssi_signo);
    const sigset_t stop = StopSignals();
    pthread_sigmask(SIG_UNBLOCK, &stop, nullptr);
}

void RunEvents::Changed(int32 what) {
    if (what == kEpochsTooDeep) wasTooDeep_ = true;
    if (what == kCalculatorParked) static_cast<void>(eventfd_write(parked_, 1));
}
