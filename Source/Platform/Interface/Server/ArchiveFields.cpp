#include "Platform/Interface/Server/ArchiveFields.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>
#include <utility>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"

status_t AddClassName(const BArchivable& object, BMessage* into) {
    if (into == nullptr) return B_BAD_VALUE;
    if (into->HasName("class")) return B_OK;
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(object).name(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? into->AddString("class", name.get()) : B_ERROR;
}

status_t AddArchive(const BArchivable& object, const char* name, BMessage* into) {
    BMessage archive(B_ARCHIVED_OBJECT);
    const status_t status = object.Archive(&archive, true);
    return status == B_OK ? into->AddMessage(name, std::move(archive)) : status;
}
