// A path, always absolute and without a slash at its end. A plain value; no file is looked at.
#pragma once

#include <string>

#include "Platform/Support/Errors.h"

struct entry_ref;

class BPath {
public:
    BPath() = default;
    explicit BPath(const char* path, const char* leaf = nullptr) { SetTo(path, leaf); }
    explicit BPath(const entry_ref& ref) { SetTo(ref); }

    // A relative path begins at the current directory.
    status_t SetTo(const char* path, const char* leaf = nullptr);
    status_t SetTo(const entry_ref& ref);
    [[nodiscard]] status_t InitCheck() const { return path_.empty() ? B_NO_INIT : B_OK; }

    // Empty when InitCheck() fails.
    [[nodiscard]] const char* Path() const { return path_.c_str(); }
    // The last name in the path.
    [[nodiscard]] const char* Leaf() const;
    // B_ENTRY_NOT_FOUND: the root directory has none.
    status_t GetParent(BPath* parent) const;

private:
    std::string path_;
};
