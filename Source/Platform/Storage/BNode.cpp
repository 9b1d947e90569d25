#include "Platform/Storage/BNode.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstring>

#include "Platform/Storage/ErrnoStatus.h"

namespace {

// A slash cannot be part of a name as it stands; the percent sign introduces its replacement.
std::string ExtendedName(const char* name) {
    std::string extended = "user.haiku.";
    for (; *name != '\0'; name++) {
        if (*name == '/')
            extended += "%\\";
        else if (*name == '%')
            extended += "%%";
        else
            extended += *name;
    }
    return extended;
}

status_t AttributeStatus(int error) {
    return error == ENODATA ? B_ENTRY_NOT_FOUND : ErrnoStatus(error);
}

}  // namespace

BNode::BNode(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {
    status_ = descriptor_.IsOpen() ? B_OK : B_NO_INIT;
}

status_t BNode::SetTo(const char* path) {
    if (path == nullptr) return Open(-1, EINVAL);
    // Not blocking: a pipe without a writer is not waited for.
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    return Open(descriptor, errno);
}

status_t BNode::Open(int descriptor, int error) {
    descriptor_ = FileDescriptor(descriptor);
    status_ = descriptor >= 0 ? B_OK : ErrnoStatus(error);
    return status_;
}

void BNode::Unset() {
    descriptor_.Reset();
    status_ = B_NO_INIT;
}

status_t BNode::WriteAttr(const char* name, type_code type, const void* data, std::size_t size) {
    if (status_ != B_OK) return status_;
    std::vector<char> value(sizeof type + size);
    std::memcpy(value.data(), &type, sizeof type);
    if (size != 0) std::memcpy(value.data() + sizeof type, data, size);
    const int result =
        fsetxattr(Descriptor(), ExtendedName(name).c_str(), value.data(), value.size(), 0);
    return result == 0 ? B_OK : AttributeStatus(errno);
}

status_t BNode::ReadAttr(const char* name, type_code* type, std::vector<char>* data) const {
    if (status_ != B_OK) return status_;
    const std::string extended = ExtendedName(name);
    std::vector<char> value;
    ssize_t size = 0;
    // The attribute may grow between the question for its size and the reading.
    do {
        size = fgetxattr(Descriptor(), extended.c_str(), nullptr, 0);
        if (size < 0) return AttributeStatus(errno);
        value.resize(static_cast<std::size_t>(size));
        size = fgetxattr(Descriptor(), extended.c_str(), value.data(), value.size());
    } while (size < 0 && errno == ERANGE);
    if (size < 0) return AttributeStatus(errno);
    if (static_cast<std::size_t>(size) < sizeof *type) return B_BAD_DATA;
    std::memcpy(type, value.data(), sizeof *type);
    data->assign(value.begin() + sizeof *type, value.begin() + size);
    return B_OK;
}

status_t BNode::RemoveAttr(const char* name) {
    if (status_ != B_OK) return status_;
    return fremovexattr(Descriptor(), ExtendedName(name).c_str()) == 0 ? B_OK
                                                                       : AttributeStatus(errno);
}

status_t BNode::Lock() {
    if (status_ != B_OK) return status_;
    if (flock(Descriptor(), LOCK_EX | LOCK_NB) == 0) return B_OK;
    return errno == EWOULDBLOCK ? B_BUSY : ErrnoStatus(errno);
}

status_t BNode::GetStat(struct stat* out) const {
    if (status_ != B_OK) return status_;
    return fstat(Descriptor(), out) == 0 ? B_OK : ErrnoStatus(errno);
}
