// A buffered output file that remembers its first error, so that a long run need not ask after
// every line. Used by one thread at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Support/SupportDefs.h"

class OutputFile {
public:
    // The path that stands for standard output.
    static constexpr std::string_view kStandardOutput = "-";

    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // Creates the file, or opens it: what is in it goes when there is something to write. 0, or
    // the errno of what failed; so do the next three.
    [[nodiscard]] int Open(const std::string& path);
    [[nodiscard]] int Error() const { return error_; }
    // Writes what is left, and closes what Open has opened.
    [[nodiscard]] int Close();
    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    // Bytes that are in the file now; of what has none, as a pipe and standard output, nothing.
    [[nodiscard]] std::optional<int64> Size() const;
    // Before anything is written: so many bytes of what is in the file stay, and what is written
    // follows them. The rest goes even if nothing is written.
    void Keep(int64 size) { kept_ = size; }
    // Writes what has gathered.
    [[nodiscard]] int Flush();
    // Flushes, and returns when all has reached the disk.
    [[nodiscard]] int Sync();
    // After an error this does nothing.
    void Write(std::string_view text);

private:
    void Empty();

    int descriptor_ = -1;
    bool owned_ = false;
    bool isEmptied_ = false;
    int64 kept_ = 0;
    int error_ = 0;
    std::string buffer_;
};
