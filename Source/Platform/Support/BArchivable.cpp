#include "Platform/Support/BArchivable.h"

#include <map>
#include <string>

#include "Platform/Application/BMessage.h"

namespace {

using Registry = std::map<std::string, instantiation_func, std::less<>>;

// Made on first use: classes enter themselves while static objects are made, in no known order.
Registry& Classes() {
    static Registry classes;
    return classes;
}

}  // namespace

BArchivable::BArchivable(BMessage* /*archive*/) {}

status_t BArchivable::Archive(BMessage* into, bool /*deep*/) const {
    return into == nullptr ? B_BAD_VALUE : B_OK;
}

bool validate_instantiation(const BMessage* archive, std::string_view className) {
    if (archive == nullptr) return false;
    std::string name;
    for (int32 i = 0; archive->FindString("class", i, &name) == B_OK; i++)
        if (name == className) return true;
    return false;
}

BArchivable* instantiate_object(BMessage* archive) {
    std::string name;
    if (archive == nullptr || archive->FindString("class", &name) != B_OK) return nullptr;
    const auto found = Classes().find(name);
    return found == Classes().end() ? nullptr : found->second(archive);
}

ArchivableClass::ArchivableClass(const char* className, instantiation_func instantiate) {
    Classes().insert_or_assign(className, instantiate);
}
