// Replaces a file at once or not at all: the new contents go to a temporary file in the same
// folder, which takes the old file's place when they are complete and on the disk. Made, used and
// destroyed by one thread; destroyed before Commit() succeeds, it leaves the old file as it was and
// no trace. The same holds when the program is killed, but for a hidden file that may stay: one of
// the last moment, or of a file system without nameless files. The next save in that folder removes
// it.
//
// A file that has other names too (hard links) is written in place, or the other names would keep
// the old contents. Until that is done the new contents also stand beside it, as "NAME.new"; they
// stay there if the program ends meanwhile, or if the writing fails.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "Platform/Storage/BNode.h"

class AtomicFile {
public:
    AtomicFile() = default;
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // A symbolic link is followed: the file that it leads to is replaced, existing or not. The
    // old file's owner, group, mode, access list and attributes are kept as far as the system lets
    // us. B_PERMISSION_DENIED also when the old file is
    // read-only; B_IS_A_DIRECTORY; B_NOT_ALLOWED: neither a regular file nor new.
    [[nodiscard]] status_t Open(const std::string& path);
    // After a failure nothing more is written and Commit() fails too.
    status_t Write(const void* data, std::size_t size);
    // The new file, to set attributes before it is seen under its name.
    [[nodiscard]] BNode& Node() { return node_; }
    // The old file is replaced if and only if the new one is on the disk completely. A failure of
    // the last step, making the new name durable, is reported although the file has been replaced.
    [[nodiscard]] status_t Commit();

    // What holds the new contents after Commit() has failed to write them in place: the file itself
    // may be half old and half new. Else empty.
    [[nodiscard]] const std::string& KeptCopy() const { return keptCopy_; }
    // Temporary files of processes that have ended, which Commit() has removed from the folder.
    [[nodiscard]] int RemovedLeftovers() const { return removedLeftovers_; }
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
    status_t PutInPlace();
    int Replace();
    int SyncFolder();
    int WriteInPlace();
    int NameCopy();
    void Discard();

    std::string target_;
    std::string folder_;
    std::string temporary_;  // the temporary file's name, empty as long as it has none
    std::string keptCopy_;
    BNode node_;
    mode_t mode_ = 0;
    bool isInPlace_ = false;
    int removedLeftovers_ = 0;
    int error_ = 0;
};
