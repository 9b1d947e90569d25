#include "Platform/Storage/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <vector>

#include "Platform/Storage/ErrnoStatus.h"
#include "Platform/Storage/FileTraits.h"
#include "Platform/Storage/TemporaryFiles.h"

namespace {

constexpr int kMaxLinks = 40;
constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kPermissions = 0777;
constexpr std::size_t kMaxLeaf = 200;  // bytes of a name in that of its copy
constexpr const char* kCopySuffix = ".new";

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string LeafOf(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

std::string InFolder(const std::string& folder, const std::string& name) {
    return folder.back() == '/' ? folder + name : folder + '/' + name;
}

// A file of ours that need not have another name.
std::string NameInProcess(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

// Copies the whole file over what the other one holds from its beginning on; false with errno.
bool CopyContents(int from, int to, off_t size) {
    constexpr off_t kChunk = 1 << 20;
    std::vector<std::byte> chunk(static_cast<std::size_t>(std::min(size, kChunk)));
    for (off_t at = 0; at < size;) {
        const ssize_t got = pread(from, chunk.data(), chunk.size(), at);
        if (got < 0 && errno == EINTR) continue;
        if (got == 0) errno = EIO;
        if (got <= 0) return false;
        for (off_t done = 0; done < got;) {
            const ssize_t put =
                pwrite(to, chunk.data() + done, static_cast<std::size_t>(got - done), at + done);
            if (put < 0 && errno != EINTR) return false;
            done += std::max<ssize_t>(put, 0);
        }
        at += got;
    }
    return true;
}

// Makes sure that there is room before anything is overwritten; 0 or the errno.
int Reserve(int file, off_t size) {
    struct stat info {};
    if (fstat(file, &info) != 0) return errno;
    if (size == 0 || fallocate(file, 0, 0, size) == 0) return 0;
    if (errno == EOPNOTSUPP || errno == ENOSYS) return 0;
    const int error = errno;
    (void)ftruncate(file, info.st_size);
    return error;
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
    removedLeftovers_ = 0;
    keptCopy_.clear();
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
    isInPlace_ = exists && old.st_nlink > 1;
    // Never open to more people than the old one, not even for a moment.
    mode_ = exists ? old.st_mode & kPermissions : kNewFileMode;
    if (const int error = Create(); error != 0) return Fail(error);
    if (exists) TakeOverTraits(target_, node_.Descriptor());
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
    FileDescriptor file(open(folder_.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, mode_));
    if (!file.IsOpen() || access(NameInProcess(file.Get()).c_str(), F_OK) != 0)
        return CreateNamed();
    TemporaryFiles::Lock(file.Get());
    node_ = BNode(std::move(file));
    return 0;
}

// Not by mkstemp: a new file gets the mode that the process's mask leaves it.
int AtomicFile::CreateNamed() {
    FileDescriptor file;
    const int error = TakeName([this, &file](const char* path) {
        file = FileDescriptor(TemporaryFiles::Create(path, mode_));
        return file.IsOpen();
    });
    if (error == 0) node_ = BNode(std::move(file));
    return error;
}

// A name that no other file has, by what makes such a file, or leaves the reason in errno.
int AtomicFile::TakeName(const std::function<bool(const char*)>& make) {
    constexpr int kAttempts = 100;
    for (int i = 0; i < kAttempts; i++) {
        std::string path = InFolder(folder_, TemporaryFiles::NewName());
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
    const BNode nameless = std::move(node_);
    if (const int error = CreateNamed(); error != 0) return error;
    struct stat info {};
    if (fstat(nameless.Descriptor(), &info) != 0 ||
        !CopyContents(nameless.Descriptor(), node_.Descriptor(), info.st_size))
        return errno;
    TakeOverTraits(target_, node_.Descriptor());
    CopyAttributes(nameless.Descriptor(), node_.Descriptor());
    return fsync(node_.Descriptor()) == 0 ? 0 : errno;
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

// Leftovers go even if this fails: they may be what fills the disk.
status_t AtomicFile::Commit() {
    const status_t status = error_ != 0 ? ErrnoStatus(error_) : PutInPlace();
    removedLeftovers_ = TemporaryFiles::RemoveLeftovers(folder_);
    return status;
}

status_t AtomicFile::PutInPlace() {
    if (fsync(node_.Descriptor()) != 0) return Fail(errno);
    if (temporary_.empty())
        if (const int error = GiveName(); error != 0) return Fail(error);
    if (const int error = isInPlace_ ? WriteInPlace() : Replace(); error != 0) return Fail(error);
    node_.Unset();
    return B_OK;
}

int AtomicFile::Replace() {
    if (rename(temporary_.c_str(), target_.c_str()) != 0) return errno;
    temporary_.clear();
    return SyncFolder();
}

int AtomicFile::SyncFolder() {
    const FileDescriptor folder(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may be written but not read cannot be synchronised.
    if (!folder.IsOpen()) return errno == EACCES ? 0 : errno;
    return fsync(folder.Get()) == 0 || errno == EINVAL ? 0 : errno;
}

// Until they stand in the file the new contents stand beside it, under a name that nobody cleans
// up.
int AtomicFile::WriteInPlace() {
    const FileDescriptor file(open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW));
    struct stat info {};
    if (!file.IsOpen() || fstat(node_.Descriptor(), &info) != 0) return errno;
    if (const int error = NameCopy(); error != 0) return error;
    if (const int error = SyncFolder(); error != 0) return error;
    const off_t size = info.st_size;
    if (const int error = Reserve(file.Get(), size); error != 0) return error;
    if (!CopyContents(node_.Descriptor(), file.Get(), size) || ftruncate(file.Get(), size) != 0 ||
        fsync(file.Get()) != 0) {
        const int error = errno;
        keptCopy_ = std::move(temporary_);
        temporary_.clear();
        return error;
    }
    CopyAttributes(node_.Descriptor(), file.Get());
    unlink(temporary_.c_str());
    temporary_.clear();
    return 0;
}

// The temporary file becomes "NAME.new", or "NAME.new 2" and so on.
int AtomicFile::NameCopy() {
    constexpr int kMaxCopies = 1000;
    const std::string first = InFolder(folder_, LeafOf(target_).substr(0, kMaxLeaf) + kCopySuffix);
    for (int i = 1; i <= kMaxCopies; i++) {
        std::string path = i == 1 ? first : first + ' ' + std::to_string(i);
        if (link(temporary_.c_str(), path.c_str()) == 0) {
            unlink(temporary_.c_str());
            temporary_ = std::move(path);
            return 0;
        }
        if (errno != EEXIST) return errno;
    }
    return EEXIST;
}
