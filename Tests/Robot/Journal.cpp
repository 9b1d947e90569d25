#include "Tests/Robot/Journal.h"

#include <execinfo.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

constexpr std::size_t kKept = 20;
constexpr int kTellWhere = SIGUSR2;
constexpr std::chrono::seconds kPatienceForThread{1};

Journal* gJournal = nullptr;
std::atomic<bool> gHasTold{false};

void PrintWhere(int /*signal*/) {
    std::array<void*, 64> frames{};
    const int count = backtrace(frames.data(), static_cast<int>(frames.size()));
    backtrace_symbols_fd(frames.data(), count, STDERR_FILENO);
    gHasTold = true;
}

// Best effort: the program is lost anyway.
[[maybe_unused]] void Crashed(int signal) {
    std::signal(signal, SIG_DFL);
    std::fputs("The program has crashed. The last actions:\n", stderr);
    if (gJournal != nullptr) std::fputs(gJournal->Last().c_str(), stderr);
    PrintWhere(signal);
    std::raise(signal);
}

void PrintAllThreads() {
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        const std::string id = thread.path().filename();
        std::string name;
        std::ifstream(thread.path() / "comm") >> name;
        std::fprintf(stderr, "--- thread %s %s\n", id.c_str(), name.c_str());
        gHasTold = false;
        syscall(SYS_tgkill, getpid(), std::atoi(id.c_str()), kTellWhere);
        const auto end = std::chrono::steady_clock::now() + kPatienceForThread;
        while (!gHasTold && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
    }
}

}  // namespace

Journal::Journal(std::string title, Duration patience)
    : title_(std::move(title)), patience_(patience) {
    gJournal = this;
    std::signal(kTellWhere, PrintWhere);
#ifndef ORVEK_SANITIZED  // which have handlers of their own
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTRAP})
        std::signal(signal, Crashed);
#endif
    // Loads what it needs now, and not in the handler.
    std::array<void*, 1> frame{};
    backtrace(frame.data(), 1);
    watch_ = std::thread([this] { Watch(); });
}

Journal::~Journal() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_all();
    watch_.join();
    gJournal = nullptr;
}

void Journal::Note(std::string action) {
    const std::lock_guard lock(mutex_);
    count_++;
    last_.push_back(std::to_string(count_) + ' ' + std::move(action));
    if (last_.size() > kKept) last_.pop_front();
    changed_.notify_all();
}

std::string Journal::Last() const {
    // Also asked for by a thread that has crashed with the mutex.
    const std::unique_lock lock(mutex_, std::try_to_lock);
    std::string text = title_ + '\n';
    for (const std::string& action : last_)
        text += "  " + action + '\n';
    return text;
}

void Journal::Watch() {
    std::unique_lock lock(mutex_);
    while (!isOver_) {
        const long before = count_;
        if (changed_.wait_for(lock, patience_, [&] { return isOver_ || count_ != before; }))
            continue;
        lock.unlock();
        std::fputs("The program is stuck. The last actions:\n", stderr);
        std::fputs(Last().c_str(), stderr);
        PrintAllThreads();
        std::signal(SIGABRT, SIG_DFL);
        std::abort();
    }
}
