// A descriptor of an open file, closed with its owner. Movable; used by one thread at a time.
#pragma once

#include <unistd.h>

#include <utility>

class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileDescriptor() { Reset(); }

    [[nodiscard]] int Get() const { return descriptor_; }
    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    // The caller's from now on.
    [[nodiscard]] int Release() { return std::exchange(descriptor_, -1); }
    void Reset() {
        if (IsOpen()) close(std::exchange(descriptor_, -1));
    }

private:
    int descriptor_ = -1;
};
