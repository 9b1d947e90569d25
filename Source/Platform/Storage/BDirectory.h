// A directory whose entries are stepped through, and the making of directories. Used by one thread
// at a time.
#pragma once

#include <dirent.h>
#include <sys/types.h>

#include <memory>
#include <string>

#include "Platform/Support/Errors.h"

class BEntry;

class BDirectory {
public:
    BDirectory() = default;
    explicit BDirectory(const char* path) { SetTo(path); }

    status_t SetTo(const char* path);
    [[nodiscard]] status_t InitCheck() const { return status_; }

    // In no particular order, without "." and "..". B_ENTRY_NOT_FOUND: there are no more.
    status_t GetNextEntry(BEntry* entry);

private:
    struct Closer {
        void operator()(DIR* directory) const { closedir(directory); }
    };

    std::string path_;
    std::unique_ptr<DIR, Closer> directory_;
    status_t status_ = B_NO_INIT;
};

// Makes the directory and those above it that are missing; the mode is limited by the process's
// mask. B_OK if it exists already.
status_t create_directory(const char* path, mode_t mode);
