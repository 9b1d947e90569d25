// A file's type and preferred application, as its attributes give them. Refers to the node, which
// must outlive it; used by one thread at a time.
#pragma once

#include <string>

#include "Platform/Support/Errors.h"

class BNode;

class BNodeInfo {
public:
    // Types and signatures have fewer bytes than this.
    static constexpr std::size_t kMimeTypeLength = 240;

    explicit BNodeInfo(BNode* node) : node_(node) {}

    // B_ENTRY_NOT_FOUND: the file has none; B_BAD_TYPE, B_BAD_DATA: not a type, or too long.
    [[nodiscard]] status_t GetType(std::string* type) const;
    [[nodiscard]] status_t GetPreferredApp(std::string* signature) const;
    // Null removes. B_OK where files have no attributes: nothing is lost but the hint.
    // The type is also written the way other desktops look for it ("user.mime_type").
    status_t SetType(const char* type);
    status_t SetPreferredApp(const char* signature);

private:
    BNode* const node_;
};
