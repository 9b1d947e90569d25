#include "Platform/Storage/BNodeInfo.h"

#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

#include "Platform/Storage/BNode.h"
#include "Platform/Storage/ErrnoStatus.h"
#include "Platform/Support/TypeConstants.h"

namespace {

constexpr const char* kTypeAttribute = "BEOS:TYPE";
constexpr const char* kPreferredAppAttribute = "BEOS:PREF_APP";
constexpr const char* kDesktopTypeAttribute = "user.mime_type";

// The code as a machine of the other byte order writes it.
constexpr type_code kForeignMimeStringType = FourCC("SMIM");

// A terminating 0 may be missing.
status_t TextOf(std::string_view data, std::string* text) {
    text->assign(data.substr(0, data.find('\0')));
    const bool isPrintable =
        std::all_of(text->begin(), text->end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (text->empty() || text->size() >= BNodeInfo::kMimeTypeLength || !isPrintable) {
        text->clear();
        return B_BAD_DATA;
    }
    return B_OK;
}

status_t ReadText(const BNode& node, const char* name, std::string* text) {
    text->clear();
    type_code type = 0;
    std::vector<char> data;
    if (const status_t status = node.ReadAttr(name, &type, &data); status != B_OK) return status;
    if (type != B_MIME_STRING_TYPE && type != kForeignMimeStringType) return B_BAD_TYPE;
    return TextOf({data.data(), data.size()}, text);
}

status_t ReadDesktopType(const BNode& node, std::string* type) {
    char value[BNodeInfo::kMimeTypeLength];
    const ssize_t size = fgetxattr(node.Descriptor(), kDesktopTypeAttribute, value, sizeof value);
    if (size >= 0) return TextOf({value, static_cast<std::size_t>(size)}, type);
    return errno == ENODATA ? B_ENTRY_NOT_FOUND : ErrnoStatus(errno);
}

status_t WriteDesktopType(const BNode& node, const char* type) {
    const int result = type == nullptr ? fremovexattr(node.Descriptor(), kDesktopTypeAttribute)
                                       : fsetxattr(node.Descriptor(), kDesktopTypeAttribute, type,
                                                   std::strlen(type), 0);
    return result == 0 || errno == ENODATA ? B_OK : ErrnoStatus(errno);
}

// There are no attributes here, or none may be set, or no more: the file is as good without.
status_t Forgive(status_t status) {
    switch (status) {
        case B_UNSUPPORTED:
        case B_PERMISSION_DENIED:
        case B_DEVICE_FULL:
        case B_BUFFER_OVERFLOW:
            return B_OK;
        default:
            return status;
    }
}

status_t WriteText(BNode& node, const char* name, const char* text) {
    if (text == nullptr) {
        const status_t status = node.RemoveAttr(name);
        return status == B_ENTRY_NOT_FOUND ? B_OK : Forgive(status);
    }
    const std::size_t length = std::strlen(text);
    if (length >= BNodeInfo::kMimeTypeLength) return B_BAD_VALUE;
    return Forgive(node.WriteAttr(name, B_MIME_STRING_TYPE, text, length + 1));
}

}  // namespace

status_t BNodeInfo::GetType(std::string* type) const {
    const status_t status = ReadText(*node_, kTypeAttribute, type);
    if (status == B_OK || node_->InitCheck() != B_OK) return status;
    const status_t desktopStatus = ReadDesktopType(*node_, type);
    return desktopStatus == B_OK ? B_OK : status;
}

status_t BNodeInfo::GetPreferredApp(std::string* signature) const {
    return ReadText(*node_, kPreferredAppAttribute, signature);
}

status_t BNodeInfo::SetType(const char* type) {
    const status_t status = WriteText(*node_, kTypeAttribute, type);
    return status == B_OK ? Forgive(WriteDesktopType(*node_, type)) : status;
}

status_t BNodeInfo::SetPreferredApp(const char* signature) {
    return WriteText(*node_, kPreferredAppAttribute, signature);
}
