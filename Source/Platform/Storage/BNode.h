// An open file or directory with its attributes and its lock. Owns its descriptor; used by one
// thread at a time.
//
// An attribute NAME is the extended attribute "user.haiku.NAME" of the file: 4 bytes type code in
// this machine's byte order, then the data. A file system without such attributes answers
// B_UNSUPPORTED.
#pragma once

#include <sys/stat.h>

#include <string>
#include <vector>

#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Support/Errors.h"

class BNode {
public:
    BNode() = default;
    explicit BNode(const char* path) { status_ = SetTo(path); }
    explicit BNode(FileDescriptor descriptor);

    // Opens for reading; links are followed. Attributes can be written all the same.
    status_t SetTo(const char* path);
    [[nodiscard]] status_t InitCheck() const { return status_; }
    void Unset();

    // Always replaces the whole attribute.
    status_t WriteAttr(const char* name, type_code type, const void* data, std::size_t size);
    // B_ENTRY_NOT_FOUND: there is none; B_BAD_DATA: not in the form described above.
    status_t ReadAttr(const char* name, type_code* type, std::vector<char>* data) const;
    status_t RemoveAttr(const char* name);

    // An advisory lock on the file, against other openings of it here and in other processes.
    // B_BUSY: somebody else holds it.
    status_t Lock();

    [[nodiscard]] status_t GetStat(struct stat* out) const;
    [[nodiscard]] int Descriptor() const { return descriptor_.Get(); }

protected:
    // Takes over what open() gave; `error` is its errno, used when the descriptor is negative.
    status_t Open(int descriptor, int error);

private:
    FileDescriptor descriptor_;
    status_t status_ = B_NO_INIT;
};
