#include "Platform/Storage/BEntry.h"

#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "Platform/Storage/BPath.h"
#include "Platform/Storage/ErrnoStatus.h"

status_t BEntry::SetTo(const char* path, bool traverse) {
    Unset();
    char real[PATH_MAX];
    if (traverse && path != nullptr) {
        if (realpath(path, real) == nullptr) return status_ = ErrnoStatus(errno);
        path = real;
    }
    return status_ = get_ref_for_path(path, &ref_);
}

status_t BEntry::SetTo(const entry_ref& ref, bool traverse) {
    std::string path;
    const status_t status = get_path_for_ref(ref, &path);
    if (status == B_OK) return SetTo(path.c_str(), traverse);
    Unset();
    return status_ = status;
}

bool BEntry::Exists() const {
    BPath path;
    struct stat info {};
    return GetPath(&path) == B_OK && lstat(path.Path(), &info) == 0;
}

bool BEntry::IsDirectory() const {
    BPath path;
    struct stat info {};
    return GetPath(&path) == B_OK && lstat(path.Path(), &info) == 0 && S_ISDIR(info.st_mode);
}

status_t BEntry::GetRef(entry_ref* ref) const {
    *ref = ref_;
    return status_;
}

status_t BEntry::GetPath(BPath* path) const {
    return status_ == B_OK ? path->SetTo(ref_) : status_;
}

status_t BEntry::GetParent(BEntry* parent) const {
    BPath path;
    if (const status_t status = GetPath(&path); status != B_OK) return status;
    BPath folder;
    if (const status_t status = path.GetParent(&folder); status != B_OK) return status;
    return parent->SetTo(folder.Path());
}

status_t BEntry::Remove() {
    BPath path;
    if (const status_t status = GetPath(&path); status != B_OK) return status;
    return std::remove(path.Path()) == 0 ? B_OK : ErrnoStatus(errno);
}
