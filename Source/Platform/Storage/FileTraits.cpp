#include "Platform/Storage/FileTraits.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "Platform/Storage/FileDescriptor.h"

namespace {

constexpr mode_t kPermissions = 0777;
constexpr const char* kAccessList = "system.posix_acl_access";

// True if the file now belongs to the group. Only the superuser may give a file to another user.
bool TakeOverOwner(const struct stat& old, int to) {
    struct stat made {};
    if (fstat(to, &made) != 0) return false;
    if (made.st_uid != old.st_uid && fchown(to, old.st_uid, old.st_gid) == 0) return true;
    return made.st_gid == old.st_gid || fchown(to, static_cast<uid_t>(-1), old.st_gid) == 0;
}

// True if the new file has the same list as the old one, or has none like it. It may have one from
// its folder.
bool TakeOverList(const std::string& from, int to) {
    const ssize_t size = lgetxattr(from.c_str(), kAccessList, nullptr, 0);
    if (size < 0) {
        (void)fremovexattr(to, kAccessList);
        return true;
    }
    std::vector<char> list(static_cast<std::size_t>(size));
    const ssize_t got = lgetxattr(from.c_str(), kAccessList, list.data(), list.size());
    return got >= 0 && fsetxattr(to, kAccessList, list.data(), static_cast<size_t>(got), 0) == 0;
}

// For a group that is not the one that had its rights, or without the list that bounded them.
mode_t GroupLikeOthers(mode_t mode) {
    return (mode & ~static_cast<mode_t>(S_IRWXG)) | (mode & S_IRWXO) << 3;
}

}  // namespace

void TakeOverTraits(const std::string& from, int to) {
    struct stat old {};
    if (lstat(from.c_str(), &old) != 0) return;
    const mode_t mode = old.st_mode & kPermissions;
    const bool isKept = TakeOverOwner(old, to) && TakeOverList(from, to);
    (void)fchmod(to, isKept ? mode : GroupLikeOthers(mode));
    const FileDescriptor file(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (file.IsOpen()) CopyAttributes(file.Get(), to);
}

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
