#include "AtomicFile.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <random>
#include <vector>

#include "ErrnoStatus.h"

namespace {

constexpr int kMaxLinks = 40;
constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kPermissions = 0777;

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string InFolder(const std::string& folder, const std::string& name) {
    return folder.back() == '/' ? folder + name : folder + '/' + name;
}

// A file of ours that need not have another name.
std::string NameInProcess(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
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

// Without a name as long as it is not complete: then nothing stays behind of a program that is
// killed. Not on every file system.
int AtomicFile::Create() {
    FileDescriptor file(open(folder_.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, kNewFileMode));
    if (!file.IsOpen() || access(NameInProcess(file.Get()).c_str(), F_OK) != 0)
        return CreateNamed();
    node_ = BNode(std::move(file));
    return 0;
}

// Not by mkstemp: a new file shall get the mode that the process's mask leaves it.
int AtomicFile::CreateNamed() {
    FileDescriptor file;
    const int error = TakeName([&file](const char* path) {
        file = FileDescriptor(open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
        return file.IsOpen();
    });
    if (error == 0) node_ = BNode(std::move(file));
    return error;
}

// A name that no other file has, by what makes such a file, or leaves the reason in errno.
int AtomicFile::TakeName(const std::function<bool(const char*)>& make) {
    constexpr int kAttempts = 100;
    std::random_device random;
    for (int i = 0; i < kAttempts; i++) {
        char name[32];
        std::snprintf(name, sizeof name, ".orvek-%08x.tmp", random());
        std::string path = InFolder(folder_, name);
        if (make(path.c_str())) {
            temporary_ = std::move(path);
            return 0;
        }
        if (errno != EEXIST) return errno;
    }
    return EEXIST;
}

// Where a file cannot get a name later, one that has a name becomes its copy.
int AtomicFile::GiveName() {
    const std::string nameless = NameInProcess(node_.Descriptor());
    const int error = TakeName([&nameless](const char* path) {
        return linkat(AT_FDCWD, nameless.c_str(), AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0;
    });
    return error == 0 ? 0 : CopyToNamed();
}

int AtomicFile::CopyToNamed() {
    constexpr std::size_t kChunk = 1 << 20;
    const BNode nameless = std::move(node_);
    if (const int error = CreateNamed(); error != 0) return error;
    off_t from = 0;
    ssize_t put = 1;
    while (put > 0 || (put < 0 && errno == EINTR))
        put = sendfile(node_.Descriptor(), nameless.Descriptor(), &from, kChunk);
    struct stat info {};
    if (put < 0 || fstat(nameless.Descriptor(), &info) != 0 ||
        fchmod(node_.Descriptor(), info.st_mode & kPermissions) != 0)
        return errno;
    CopyAttributes(nameless.Descriptor(), node_.Descriptor());
    return fsync(node_.Descriptor()) == 0 ? 0 : errno;
}

int AtomicFile::TakeOver() {
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
    if (temporary_.empty())
        if (const int error = GiveName(); error != 0) return Fail(error);
    if (rename(temporary_.c_str(), target_.c_str()) != 0) return Fail(errno);
    temporary_.clear();
    node_.Unset();
    const FileDescriptor folder(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may be written but not read cannot be synchronised.
    if (!folder.IsOpen()) return errno == EACCES ? B_OK : Fail(errno);
    if (fsync(folder.Get()) != 0 && errno != EINVAL) return Fail(errno);
    return B_OK;
}
