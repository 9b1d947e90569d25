#include "Interface Widgets/AbbrevMenuField.h"

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kAbbreviation = "Abbreviation";

const ArchivableClass kItemClass("AbbrevMenuItem", AbbrevMenuItem::Instantiate);
const ArchivableClass kClass("AbbrevMenuField", AbbrevMenuField::Instantiate);

}  // namespace

AbbrevMenuItem::AbbrevMenuItem(const char* label, const char* abbreviation, BMessage* message,
                               char shortcut, uint32 modifiers)
    : BMenuItem(label, message, shortcut, modifiers),
      abbreviation_(abbreviation == nullptr ? "" : abbreviation) {}

AbbrevMenuItem::AbbrevMenuItem(BMessage* archive) : BMenuItem(archive) {
    if (archive != nullptr) archive->FindString(kAbbreviation, &abbreviation_);
}

BArchivable* AbbrevMenuItem::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "AbbrevMenuItem") ? new AbbrevMenuItem(archive)
                                                             : nullptr;
}

status_t AbbrevMenuItem::Archive(BMessage* into, bool deep) const {
    const status_t status = BMenuItem::Archive(into, deep);
    return status == B_OK ? into->AddString(kAbbreviation, abbreviation_) : status;
}

AbbrevMenuField::AbbrevMenuField(const char* name, const char* label, BMenu* menu)
    : BMenuField(name, label, menu) {}

AbbrevMenuField::AbbrevMenuField(BMessage* archive) : BMenuField(archive) {}

BArchivable* AbbrevMenuField::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "AbbrevMenuField") ? new AbbrevMenuField(archive)
                                                              : nullptr;
}
