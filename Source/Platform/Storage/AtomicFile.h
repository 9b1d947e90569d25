// Replaces a file at once or not at all: the new contents go to a temporary file in the same
// folder, which takes the old file's place when they are complete and on the disk. Made, used and
// destroyed by one thread; destroyed before Commit() succeeds, it leaves the old file as it was and
// no trace. The same holds when the program is killed, where the file system knows files without a
// name; elsewhere a hidden file stays.
#pragma once

#include <functional>
#include <string>

#include "BNode.h"

class AtomicFile {
public:
    AtomicFile() = default;
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // A symbolic link is followed: the file that it leads to is replaced, existing or not. The mode
    // and the attributes of the old file are kept. B_PERMISSION_DENIED also when the old file is
    // read-only; B_IS_A_DIRECTORY; B_NOT_ALLOWED: neither a regular file nor new.
    [[nodiscard]] status_t Open(const std::string& path);
    // After a failure nothing more is written and Commit() fails too.
    status_t Write(const void* data, std::size_t size);
    // The new file, to set attributes before it is seen under its name.
    [[nodiscard]] BNode& Node() { return node_; }
    // The old file is replaced if and only if the new one is on the disk completely. A failure of
    // the last step, making the new name durable, is reported although the file has been replaced.
    [[nodiscard]] status_t Commit();

    // The system's number for the failure that was reported, 0 for none.
    [[nodiscard]] int SystemError() const { return error_; }

private:
    status_t Fail(int error);
    int FollowLinks(const std::string& path);
    int Create();
    int CreateNamed();
    int TakeName(const std::function<bool(const char*)>& make);
    int GiveName();
    int CopyToNamed();
    int TakeOver();
    void Discard();

    std::string target_;
    std::string folder_;
    std::string temporary_;  // the temporary file's name, empty as long as it has none
    BNode node_;
    int error_ = 0;
};
