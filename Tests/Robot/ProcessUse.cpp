#include "ProcessUse.h"

#include <malloc.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr const char* kThreads = "/proc/self/task";
constexpr const char* kDescriptors = "/proc/self/fd";
constexpr std::chrono::seconds kPatience{20};

int CountIn(const char* folder) {
    int count = 0;
    for ([[maybe_unused]] const fs::directory_entry& entry : fs::directory_iterator(folder))
        count++;
    return count;
}

}  // namespace

ProcessUse ProcessUse::Now() {
    const struct mallinfo2 heap = mallinfo2();
    return {CountIn(kThreads), CountIn(kDescriptors), heap.uordblks + heap.hblkhd};
}

void AwaitThreads(int most) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (CountIn(kThreads) > most && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}

std::ostream& operator<<(std::ostream& out, const ProcessUse& use) {
    return out << use.threads << " threads, " << use.descriptors << " descriptors, "
               << use.heap / 1024 << " KB";
}

void PrintHeld(std::ostream& out) {
    for (const fs::directory_entry& entry : fs::directory_iterator(kThreads)) {
        std::string name;
        std::getline(std::ifstream(entry.path() / "comm"), name);
        out << "thread " << name << '\n';
    }
    std::error_code gone;  // the one of the walk itself
    for (const fs::directory_entry& entry : fs::directory_iterator(kDescriptors))
        out << entry.path().filename().string() << ' '
            << fs::read_symlink(entry.path(), gone).string() << '\n';
}
