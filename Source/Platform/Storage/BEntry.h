// The place of a file or directory in a folder, which must exist; the file need not. A plain value.
#pragma once

#include <string>

#include "Platform/Storage/entry_ref.h"

class BPath;

class BEntry {
public:
    BEntry() = default;
    // `traverse`: a link stands for what it leads to in the end, which then must exist.
    explicit BEntry(const char* path, bool traverse = false) { SetTo(path, traverse); }
    explicit BEntry(const entry_ref& ref, bool traverse = false) { SetTo(ref, traverse); }

    status_t SetTo(const char* path, bool traverse = false);
    status_t SetTo(const entry_ref& ref, bool traverse = false);
    [[nodiscard]] status_t InitCheck() const { return status_; }
    void Unset() { *this = BEntry(); }

    [[nodiscard]] bool Exists() const;
    [[nodiscard]] bool IsDirectory() const;
    [[nodiscard]] const char* Name() const { return ref_.name.c_str(); }
    status_t GetRef(entry_ref* ref) const;
    status_t GetPath(BPath* path) const;
    // B_ENTRY_NOT_FOUND: the root directory has none.
    status_t GetParent(BEntry* parent) const;
    // Deletes the file, or the directory if it is empty.
    status_t Remove();

private:
    entry_ref ref_;
    status_t status_ = B_NO_INIT;
};
