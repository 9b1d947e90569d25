#include "Run/KeptRows.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "Platform/Storage/FileDescriptor.h"

namespace {

bool HasAt(int descriptor, off_t at, std::string_view expected) {
    std::string found(expected.size(), '\0');
    const ssize_t size = pread(descriptor, found.data(), found.size(), at);
    return size == static_cast<ssize_t>(expected.size()) && found == expected;
}

}  // namespace

int FindKeptRows(const std::string& path, std::string_view header, int64 size,
                 std::string_view lastRow, bool* areThere) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.IsOpen()) return errno;
    const auto rowAt = static_cast<off_t>(size) - static_cast<off_t>(lastRow.size());
    *areThere = HasAt(file.Get(), 0, header) && HasAt(file.Get(), rowAt, lastRow);
    return 0;
}
