#include "Platform/Storage/entry_ref.h"

#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>
#include <mutex>
#include <utility>

#include "Platform/Storage/ErrnoStatus.h"

namespace {

using DirectoryId = std::pair<int64, int64>;

// Stored records hold devices in 32 bits.
DirectoryId IdOf(const struct stat& info) {
    return {static_cast<int32>(info.st_dev), static_cast<int64>(info.st_ino)};
}

// Where every directory that a reference was made in has last been seen.
class DirectoryTable {
public:
    void Remember(DirectoryId id, std::string path) {
        const std::lock_guard lock(mutex_);
        paths_[id] = std::move(path);
    }

    std::string PathOf(DirectoryId id) {
        const std::lock_guard lock(mutex_);
        const auto found = paths_.find(id);
        return found == paths_.end() ? std::string() : found->second;
    }

private:
    std::mutex mutex_;
    std::map<DirectoryId, std::string> paths_;
};

DirectoryTable& Directories() {
    static DirectoryTable table;
    return table;
}

status_t RealPath(const std::string& path, std::string* real) {
    char buffer[PATH_MAX];
    if (realpath(path.c_str(), buffer) == nullptr) return ErrnoStatus(errno);
    *real = buffer;
    return B_OK;
}

bool IsDots(const std::string& name) {
    return name.empty() || name == "." || name == "..";
}

// Splits at the last slash; the folder of a plain name is ".".
void Split(const std::string& path, std::string* folder, std::string* name) {
    const std::size_t end = path.find_last_not_of('/') + 1;
    const std::size_t slash = path.find_last_of('/', end == 0 ? 0 : end - 1);
    *name =
        slash == std::string::npos ? path.substr(0, end) : path.substr(slash + 1, end - slash - 1);
    *folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

}  // namespace

status_t get_ref_for_path(const char* path, entry_ref* ref) {
    *ref = entry_ref();
    if (path == nullptr || *path == '\0') return B_BAD_VALUE;
    std::string folder;
    std::string name;
    Split(path, &folder, &name);
    if (IsDots(name)) {
        std::string real;
        if (const status_t status = RealPath(path, &real); status != B_OK) return status;
        Split(real, &folder, &name);
        if (name.empty()) name = ".";
    }
    std::string directory;
    if (const status_t status = RealPath(folder, &directory); status != B_OK) return status;
    struct stat info {};
    if (stat(directory.c_str(), &info) != 0) return ErrnoStatus(errno);
    if (!S_ISDIR(info.st_mode)) return B_NOT_A_DIRECTORY;
    const DirectoryId id = IdOf(info);
    Directories().Remember(id, std::move(directory));
    *ref = {id.first, id.second, std::move(name)};
    return B_OK;
}

status_t get_path_for_ref(const entry_ref& ref, std::string* path) {
    const DirectoryId id{ref.device, ref.directory};
    *path = Directories().PathOf(id);
    struct stat info {};
    if (path->empty() || ref.name.empty() || stat(path->c_str(), &info) != 0 || IdOf(info) != id) {
        path->clear();
        return B_ENTRY_NOT_FOUND;
    }
    if (ref.name == ".") return B_OK;
    if (path->back() != '/') *path += '/';
    *path += ref.name;
    return B_OK;
}
