// An open file with a position. Used by one thread at a time.
#pragma once

#include <sys/types.h>

#include "Platform/Storage/BNode.h"

// How to open; the access modes exclude each other.
inline constexpr uint32 B_READ_ONLY = 0;
inline constexpr uint32 B_WRITE_ONLY = 1;
inline constexpr uint32 B_READ_WRITE = 2;
inline constexpr uint32 B_CREATE_FILE = 0x0200;
inline constexpr uint32 B_ERASE_FILE = 0x0400;

class BFile : public BNode {
public:
    BFile() = default;
    BFile(const char* path, uint32 mode) { SetTo(path, mode); }

    // New files get the mode 0666 less the process's mask.
    status_t SetTo(const char* path, uint32 mode);

    // How many bytes were read (fewer than asked for only at the end), or a status.
    ssize_t Read(void* into, std::size_t size);
    ssize_t ReadAt(off_t position, void* into, std::size_t size);

    [[nodiscard]] off_t Position() const { return position_; }
    [[nodiscard]] status_t GetSize(off_t* size) const;

private:
    off_t position_ = 0;
};
