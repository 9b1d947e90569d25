#include "Platform/Storage/BPath.h"

#include <filesystem>

#include "Platform/Storage/entry_ref.h"

status_t BPath::SetTo(const char* path, const char* leaf) {
    path_.clear();
    if (path == nullptr || *path == '\0') return B_BAD_VALUE;
    std::filesystem::path whole = path;
    if (leaf != nullptr) {
        // An absolute leaf would replace the folder instead of continuing it.
        if (*leaf == '/') return B_BAD_VALUE;
        whole /= leaf;
    }
    std::error_code error;
    whole = std::filesystem::absolute(whole, error).lexically_normal();
    if (error) return B_ENTRY_NOT_FOUND;
    path_ = whole.native();
    if (path_.size() > 1 && path_.back() == '/') path_.pop_back();
    return B_OK;
}

status_t BPath::SetTo(const entry_ref& ref) {
    return get_path_for_ref(ref, &path_);
}

const char* BPath::Leaf() const {
    const std::size_t slash = path_.find_last_of('/');
    return path_.c_str() + (slash == std::string::npos ? 0 : slash + 1);
}

status_t BPath::GetParent(BPath* parent) const {
    if (path_.empty()) return B_NO_INIT;
    if (path_ == "/") return B_ENTRY_NOT_FOUND;
    const std::size_t slash = path_.find_last_of('/');
    parent->path_ = path_.substr(0, slash == 0 ? 1 : slash);
    return B_OK;
}
