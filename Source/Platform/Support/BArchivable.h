// Objects that write themselves into records and are made again from them by class name.
// The registry of classes is filled before main() and read-only afterwards: any thread may call.
#pragma once

#include <memory>
#include <string_view>

#include "Platform/Support/SupportDefs.h"

class BMessage;

class BArchivable {
public:
    BArchivable() = default;
    explicit BArchivable(BMessage* archive);
    virtual ~BArchivable() = default;

    // Adds the object's fields to `into`. `deep`: with those of its children. B_BAD_VALUE for null.
    // The base adds nothing: a class that can be instantiated adds its own name as "class".
    [[nodiscard]] virtual status_t Archive(BMessage* into, bool deep = true) const;

protected:
    BArchivable(const BArchivable&) = default;
    BArchivable& operator=(const BArchivable&) = default;
};

using instantiation_func = BArchivable* (*)(BMessage*);

// True if any item of the string field "class" equals className.
[[nodiscard]] bool validate_instantiation(const BMessage* archive, std::string_view className);

// A new object (the caller owns it) of the class that item 0 of "class" names; null when the record
// names no registered class, or when that class refuses it.
[[nodiscard]] BArchivable* instantiate_object(BMessage* archive);

// The same; null also when the object is no T.
template <typename T>
[[nodiscard]] std::unique_ptr<T> InstantiateAs(BMessage* archive) {
    std::unique_ptr<BArchivable> object(instantiate_object(archive));
    auto* const wanted = dynamic_cast<T*>(object.get());
    if (wanted != nullptr) static_cast<void>(object.release());
    return std::unique_ptr<T>(wanted);
}

// One static object of this kind beside each archivable class enters it into the registry.
class ArchivableClass {
public:
    ArchivableClass(const char* className, instantiation_func instantiate);
};
