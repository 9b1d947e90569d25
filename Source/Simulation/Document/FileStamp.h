// What tells whether a file is still the one that was read or written: where it lies on its device,
// its time, its size and a digest of its contents. A plain value.
#pragma once

#include <sys/types.h>

#include <array>
#include <ctime>
#include <optional>
#include <string>

#include "Platform/Support/SupportDefs.h"

class BMessage;

class FileStamp {
public:
    // Reads the whole file; none when it cannot be read.
    [[nodiscard]] static std::optional<FileStamp> Of(const std::string& path);

    // The contents alone, as a record holds them; none if it holds none.
    [[nodiscard]] static std::optional<FileStamp> From(const BMessage& record);
    status_t AddTo(BMessage* record) const;

    // The file there has other contents than this one had, or cannot be read to tell. False when
    // there is none. Reads it only if its place on the device, time or size differ.
    [[nodiscard]] bool DiffersAt(const std::string& path) const;
    [[nodiscard]] bool HasContentsOf(const FileStamp& other) const {
        return size_ == other.size_ && digest_ == other.digest_;
    }

private:
    FileStamp() = default;

    dev_t device_ = 0;
    ino_t inode_ = 0;
    std::timespec time_{};
    off_t size_ = 0;
    std::array<uint8, 32> digest_{};
};
