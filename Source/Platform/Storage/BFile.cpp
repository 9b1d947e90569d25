#include "Platform/Storage/BFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "Platform/Storage/ErrnoStatus.h"

status_t BFile::SetTo(const char* path, uint32 mode) {
    constexpr uint32 kAccessMask = 3;
    constexpr int kAccess[] = {O_RDONLY, O_WRONLY, O_RDWR};
    constexpr mode_t kNewFileMode = 0666;
    Unset();
    position_ = 0;
    if (path == nullptr || (mode & kAccessMask) > B_READ_WRITE) return Open(-1, EINVAL);
    int flags = kAccess[mode & kAccessMask];
    if ((mode & B_CREATE_FILE) != 0) flags |= O_CREAT;
    if ((mode & B_ERASE_FILE) != 0) flags |= O_TRUNC;
    const int descriptor = open(path, flags | O_CLOEXEC, kNewFileMode);
    return Open(descriptor, errno);
}

ssize_t BFile::Read(void* into, std::size_t size) {
    const ssize_t got = ReadAt(position_, into, size);
    if (got > 0) position_ += got;
    return got;
}

ssize_t BFile::ReadAt(off_t position, void* into, std::size_t size) {
    if (InitCheck() != B_OK) return InitCheck();
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = pread(Descriptor(), static_cast<char*>(into) + done, size - done,
                                  position + static_cast<off_t>(done));
        if (got == 0) break;
        if (got > 0)
            done += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            return ErrnoStatus(errno);
    }
    return static_cast<ssize_t>(done);
}

status_t BFile::GetSize(off_t* size) const {
    struct stat info {};
    const status_t status = GetStat(&info);
    *size = info.st_size;
    return status;
}
