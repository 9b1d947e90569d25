#include "ProcessUse.h"

#include <filesystem>
#include <ostream>

namespace fs = std::filesystem;

namespace {

int CountIn(const char* folder) {
    int count = 0;
    for ([[maybe_unused]] const fs::directory_entry& entry : fs::directory_iterator(folder))
        count++;
    return count;
}

}  // namespace

ProcessUse ProcessUse::Now() {
    return {CountIn("/proc/self/task"), CountIn("/proc/self/fd")};
}

std::ostream& operator<<(std::ostream& out, const ProcessUse& use) {
    return out << use.threads << " threads, " << use.descriptors << " descriptors";
}

void PrintDescriptors(std::ostream& out) {
    std::error_code gone;  // the one of the walk itself
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd"))
        out << entry.path().filename().string() << ' '
            << fs::read_symlink(entry.path(), gone).string() << '\n';
}
