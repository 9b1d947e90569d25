#include "Run/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 18;
constexpr mode_t kMode = 0666;

}  // namespace

OutputFile::~OutputFile() {
    static_cast<void>(Close());
}

int OutputFile::Open(const std::string& path) {
    buffer_.reserve(kBufferSize);
    owned_ = path != kStandardOutput;
    descriptor_ =
        owned_ ? open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, kMode) : STDOUT_FILENO;
    if (descriptor_ < 0) error_ = errno;
    return error_;
}

int OutputFile::Close() {
    if (descriptor_ < 0) return error_;
    if (kept_ > 0) Empty();
    static_cast<void>(Flush());
    if (owned_ && close(descriptor_) != 0 && error_ == 0) error_ = errno;
    descriptor_ = -1;
    return error_;
}

void OutputFile::Write(std::string_view text) {
    if (buffer_.size() + text.size() > kBufferSize) static_cast<void>(Flush());
    if (error_ == 0) buffer_ += text;
}

int OutputFile::Flush() {
    if (!buffer_.empty()) Empty();
    std::string_view rest = buffer_;
    while (!rest.empty() && error_ == 0) {
        const ssize_t written = write(descriptor_, rest.data(), rest.size());
        if (written >= 0)
            rest.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            error_ = errno;
    }
    buffer_.clear();
    return error_;
}

int OutputFile::Sync() {
    static_cast<void>(Flush());
    if (error_ == 0 && Size() && fdatasync(descriptor_) != 0) error_ = errno;
    return error_;
}

std::optional<int64> OutputFile::Size() const {
    struct stat info {};
    if (!owned_ || fstat(descriptor_, &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
    return info.st_size;
}

// Once, before the first byte. What is not a regular file has nothing to lose.
void OutputFile::Empty() {
    if (isEmptied_ || error_ != 0 || !Size()) return;
    isEmptied_ = true;
    if (ftruncate(descriptor_, kept_) != 0 || lseek(descriptor_, kept_, SEEK_SET) < 0)
        error_ = errno;
}
