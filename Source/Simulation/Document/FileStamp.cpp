#include "Simulation/Document/FileStamp.h"

#include <fcntl.h>
#include <sha2.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <type_traits>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Storage/FileDescriptor.h"

namespace {

constexpr const char* kSizeField = "Recovered size";
constexpr const char* kDigestField = "Recovered digest";

constexpr std::size_t kChunk = std::size_t{1} << 16;

static_assert(SHA256_DIGEST_LENGTH == 32);

bool Digest(int file, std::array<uint8, 32>* digest) {
    SHA2_CTX context;
    SHA256Init(&context);
    std::vector<uint8> chunk(kChunk);
    for (;;) {
        const ssize_t got = read(file, chunk.data(), chunk.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) break;
        SHA256Update(&context, chunk.data(), static_cast<std::size_t>(got));
    }
    SHA256Final(digest->data(), &context);
    return true;
}

}  // namespace

std::optional<FileStamp> FileStamp::Of(const std::string& path) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info {};
    if (!file.IsOpen() || fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return {};
    FileStamp stamp(info);
    if (!Digest(file.Get(), &stamp.digest_)) return {};
    return stamp;
}

FileStamp::FileStamp(const struct stat& file)
    : device_(file.st_dev), inode_(file.st_ino), time_(file.st_mtim), size_(file.st_size) {}

FileStamp::FileStamp(const struct stat& file, std::span<const std::byte> contents)
    : FileStamp(file) {
    SHA2_CTX context;
    SHA256Init(&context);
    SHA256Update(&context, reinterpret_cast<const uint8*>(contents.data()), contents.size());
    SHA256Final(digest_.data(), &context);
}

status_t FileStamp::AddTo(BMessage* record) const {
    static_assert(std::is_trivially_copyable_v<FileStamp>);
    return record->AddData(kField, B_RAW_TYPE, this, sizeof *this);
}

std::optional<FileStamp> FileStamp::FindIn(const BMessage& record) {
    const void* data = nullptr;
    std::size_t size = 0;
    FileStamp stamp;
    if (record.FindData(kField, B_RAW_TYPE, 0, &data, &size) != B_OK || size != sizeof stamp)
        return {};
    std::memcpy(&stamp, data, size);
    return stamp;
}

std::optional<FileStamp> FileStamp::FindContentsIn(const BMessage& record) {
    FileStamp stamp;
    int64 size = 0;
    const void* digest = nullptr;
    std::size_t bytes = 0;
    if (record.FindInt64(kSizeField, &size) != B_OK ||
        record.FindData(kDigestField, B_RAW_TYPE, 0, &digest, &bytes) != B_OK ||
        bytes != stamp.digest_.size())
        return {};
    stamp.size_ = size;
    std::memcpy(stamp.digest_.data(), digest, bytes);
    return stamp;
}

status_t FileStamp::AddContentsTo(BMessage* record) const {
    record->RemoveName(kSizeField);
    record->RemoveName(kDigestField);
    const status_t status = record->AddInt64(kSizeField, size_);
    if (status != B_OK) return status;
    return record->AddData(kDigestField, B_RAW_TYPE, digest_.data(), digest_.size());
}

bool FileStamp::DiffersAt(const std::string& path) const {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) return false;
    if (info.st_dev == device_ && info.st_ino == inode_ && info.st_size == size_ &&
        info.st_mtim.tv_sec == time_.tv_sec && info.st_mtim.tv_nsec == time_.tv_nsec)
        return false;
    const std::optional<FileStamp> now = Of(path);
    return !now || !now->HasContentsOf(*this);
}
