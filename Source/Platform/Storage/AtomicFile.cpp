#include "AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <random>
#include <vector>

#include "ErrnoStatus.h"

namespace {

constexpr int kMaxLinks = 40;

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string InFolder(const std::string& folder, const std::string& name) {
    return folder.back() == '/' ? folder + name : folder + '/' + name;
}

// What a user or a desktop has noted on the old file stays on the new one. Best effort: attributes
// are a hint.
void CopyAttributes(int from, int to) {
    const ssize_t listSize = flistxattr(from, nullptr, 0);
    if (listSize <= 0) return;
    std::vector<char> names(static_cast<std::size_t>(listSize));
    const ssize_t got = flistxattr(from, names.data(), names.size());
    std::vector<char> value;
    for (ssize_t at = 0; at < got;) {
        const std::string name = &names[static_cast<std::size_t>(at)];
        at += static_cast<ssize_t>(name.size()) + 1;
        if (!name.starts_with("user.")) continue;
        const ssize_t size = fgetxattr(from, name.c_str(), nullptr, 0);
        if (size < 0) continue;
        value.resize(static_cast<std::size_t>(size));
        const ssize_t read = fgetxattr(from, name.c_str(), value.data(), value.size());
        if (read >= 0)
            (void)fsetxattr(to, name.c_str(), value.data(), static_cast<size_t>(read), 0);
    }
}

}  // namespace

AtomicFile::~AtomicFile() {
    Discard();
}

void AtomicFile::Discard() {
    node_.Unset();
    if (!temporary_.empty()) unlink(temporary_.c_str());
    temporary_.clear();
}

status_t AtomicFile::Fail(int error) {
    Discard();
    error_ = error;
    return ErrnoStatus(error);
}

status_t AtomicFile::Open(const std::string& path) {
    Discard();
    error_ = 0;
    if (const int error = FollowLinks(path); error != 0) return Fail(error);
    folder_ = FolderOf(target_);
    struct stat old {};
    const bool exists = lstat(target_.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) return Fail(errno);
    if (exists && S_ISDIR(old.st_mode)) return Fail(EISDIR);
    if (exists && !S_ISREG(old.st_mode)) {
        (void)Fail(EINVAL);
        return B_NOT_ALLOWED;
    }
    if (exists && faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) return Fail(errno);
    if (const int error = Create(); error != 0) return Fail(error);
    if (exists)
        if (const int error = TakeOver(); error != 0) return Fail(error);
    return B_OK;
}

// The path of the file itself, by links that may lead to nothing yet.
int AtomicFile::FollowLinks(const std::string& path) {
    target_ = path;
    if (target_.empty()) return ENOENT;
    for (int links = 0; links <= kMaxLinks; links++) {
        char link[PATH_MAX];
        const ssize_t size = readlink(target_.c_str(), link, sizeof link);
        if (size < 0) return errno == EINVAL || errno == ENOENT ? 0 : errno;
        if (size == 0 || size == sizeof link) return ENAMETOOLONG;
        const std::string leadsTo(link, static_cast<std::size_t>(size));
        target_ = leadsTo[0] == '/' ? leadsTo : InFolder(FolderOf(target_), leadsTo);
    }
    return ELOOP;
}

// Not by mkstemp: a new file shall get the mode that the process's mask leaves it.
int AtomicFile::Create() {
    constexpr mode_t kNewFileMode = 0666;
    constexpr int kAttempts = 100;
    std::random_device random;
    for (int i = 0; i < kAttempts; i++) {
        char name[32];
        std::snprintf(name, sizeof name, ".orvek-%08x.tmp", random());
        std::string path = InFolder(folder_, name);
        FileDescriptor file(
            open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
        if (file.IsOpen()) {
            node_ = BNode(std::move(file));
            temporary_ = std::move(path);
            return 0;
        }
        if (errno != EEXIST) return errno;
    }
    return EEXIST;
}

int AtomicFile::TakeOver() {
    constexpr mode_t kPermissions = 0777;
    const FileDescriptor old(open(target_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    struct stat info {};
    if (lstat(target_.c_str(), &info) != 0) return errno;
    if (fchmod(node_.Descriptor(), info.st_mode & kPermissions) != 0) return errno;
    if (old.IsOpen()) CopyAttributes(old.Get(), node_.Descriptor());
    return 0;
}

status_t AtomicFile::Write(const void* data, std::size_t size) {
    if (error_ != 0) return ErrnoStatus(error_);
    const auto* from = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t put = write(node_.Descriptor(), from, size);
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return Fail(errno);
        from += put;
        size -= static_cast<std::size_t>(put);
    }
    return B_OK;
}

status_t AtomicFile::Commit() {
    if (error_ != 0) return ErrnoStatus(error_);
    if (fsync(node_.Descriptor()) != 0) return Fail(errno);
    if (rename(temporary_.c_str(), target_.c_str()) != 0) return Fail(errno);
    temporary_.clear();
    node_.Unset();
    const FileDescriptor folder(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may be written but not read cannot be synchronised.
    if (!folder.IsOpen()) return errno == EACCES ? B_OK : Fail(errno);
    if (fsync(folder.Get()) != 0 && errno != EINVAL) return Fail(errno);
    return B_OK;
}
