#include "Platform/Storage/TemporaryFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>

#include "Platform/Storage/FileDescriptor.h"

namespace {

constexpr std::string_view kPrefix = ".orvek-";
constexpr std::string_view kSuffix = ".tmp";
constexpr std::size_t kDigits = 8;

bool IsDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

bool HasName(int descriptor) {
    struct stat info {};
    return fstat(descriptor, &info) == 0 && info.st_nlink > 0;
}

}  // namespace

std::string TemporaryFiles::NewName() {
    std::random_device random;
    char digits[kDigits + 1];
    std::snprintf(digits, sizeof digits, "%08x", random());
    return std::string(kPrefix) + digits + std::string(kSuffix);
}

bool TemporaryFiles::IsName(std::string_view name) {
    if (name.size() != kPrefix.size() + kDigits + kSuffix.size() || !name.starts_with(kPrefix) ||
        !name.ends_with(kSuffix))
        return false;
    return std::ranges::all_of(name.substr(kPrefix.size(), kDigits), IsDigit);
}

int TemporaryFiles::Create(const char* path, unsigned mode) {
    FileDescriptor file(open(path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file.IsOpen()) return -1;
    Lock(file.Get());
    if (HasName(file.Get())) return file.Release();
    // Until it was locked it looked like a leftover, and another process has removed it.
    errno = EEXIST;
    return -1;
}

void TemporaryFiles::Lock(int descriptor) {
    while (flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
}

int TemporaryFiles::RemoveLeftovers(const std::string& folder) {
    namespace fs = std::filesystem;
    int removed = 0;
    std::error_code failure;
    fs::directory_iterator entry(folder, failure);
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
        if (!IsName(entry->path().filename().string())) continue;
        const std::string path = entry->path().string();
        const FileDescriptor file(
            open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.IsOpen() && flock(file.Get(), LOCK_EX | LOCK_NB) == 0 && unlink(path.c_str()) == 0)
            removed++;
    }
    return removed;
}
