#include "Platform/Storage/BDirectory.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "Platform/Storage/BEntry.h"
#include "Platform/Storage/ErrnoStatus.h"

status_t BDirectory::SetTo(const char* path) {
    if (path == nullptr) return status_ = B_BAD_VALUE;
    path_ = path;
    directory_.reset(opendir(path));
    return status_ = directory_ ? B_OK : ErrnoStatus(errno);
}

status_t BDirectory::GetNextEntry(BEntry* entry) {
    if (status_ != B_OK) return status_;
    const dirent* found = nullptr;
    do {
        errno = 0;
        found = readdir(directory_.get());
        if (found == nullptr) return errno == 0 ? B_ENTRY_NOT_FOUND : ErrnoStatus(errno);
    } while (std::strcmp(found->d_name, ".") == 0 || std::strcmp(found->d_name, "..") == 0);
    return entry->SetTo((path_ + '/' + found->d_name).c_str());
}

status_t create_directory(const char* path, mode_t mode) {
    if (path == nullptr || *path == '\0') return B_BAD_VALUE;
    const std::string whole = path;
    std::size_t end = 0;
    do {
        end = whole.find('/', end + 1);
        const std::string part = whole.substr(0, end);
        if (mkdir(part.c_str(), mode) != 0 && errno != EEXIST && errno != EISDIR) {
            // Where nothing may be made the directory may still exist already.
            const int error = errno;
            struct stat info {};
            if (stat(part.c_str(), &info) != 0) return ErrnoStatus(error);
        }
    } while (end != std::string::npos);
    struct stat info {};
    if (stat(path, &info) != 0) return ErrnoStatus(errno);
    return S_ISDIR(info.st_mode) ? B_OK : B_NOT_A_DIRECTORY;
}
