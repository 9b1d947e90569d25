// What tells whether a file is still the one that was read or written: where it lies on its device,
// its time, its size and a digest of its contents. A plain value.
#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <ctime>
#include <optional>
#include <span>
#include <string>

#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
struct stat;

class FileStamp {
public:
    // Reads the whole file; none when it cannot be read.
    [[nodiscard]] static std::optional<FileStamp> Of(const std::string& path);
    // Of what was read from an open file, and what the system said of that before.
    FileStamp(const struct stat& file, std::span<const std::byte> contents);

    // In a record that was read, beside the fields of the file: it goes wherever the record does.
    static constexpr const char* kField = "File stamp";
    [[nodiscard]] status_t AddTo(BMessage* record) const;
    [[nodiscard]] static std::optional<FileStamp> FindIn(const BMessage& record);

    // The contents alone, as a record holds them; none if it holds none.
    [[nodiscard]] static std::optional<FileStamp> FindContentsIn(const BMessage& record);
    [[nodiscard]] status_t AddContentsTo(BMessage* record) const;

    // The file there has other contents than this one had, or cannot be read to tell. False when
    // there is none. Reads it only if its place on the device, time or size differ.
    [[nodiscard]] bool DiffersAt(const std::string& path) const;
    [[nodiscard]] bool HasContentsOf(const FileStamp& other) const {
        return size_ == other.size_ && digest_ == other.digest_;
    }

private:
    FileStamp() = default;
    explicit FileStamp(const struct stat& file);

    dev_t device_ = 0;
    ino_t inode_ = 0;
    std::timespec time_{};
    off_t size_ = 0;
    std::array<uint8, 32> digest_{};
};
