#include "Interface Widgets/AbbreviatedMenuItem.h"

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kAbbreviation = "Abbreviation";

const ArchivableClass kClass("AbbreviatedMenuItem", AbbreviatedMenuItem::Instantiate);

}  // namespace

AbbreviatedMenuItem::AbbreviatedMenuItem(const char* label, const char* abbreviation,
                                         BMessage* message, char shortcut, uint32 modifiers)
    : BMenuItem(label, message, shortcut, modifiers),
      abbreviation_(abbreviation == nullptr ? "" : abbreviation) {}

AbbreviatedMenuItem::AbbreviatedMenuItem(BMessage* archive) : BMenuItem(archive) {
    if (archive != nullptr) archive->FindString(kAbbreviation, &abbreviation_);
}

BArchivable* AbbreviatedMenuItem::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "AbbreviatedMenuItem") ? new AbbreviatedMenuItem(archive)
                                                                  : nullptr;
}

status_t AbbreviatedMenuItem::Archive(BMessage* into, bool deep) const {
    const status_t status = BMenuItem::Archive(into, deep);
    return status == B_OK ? into->AddString(kAbbreviation, abbreviation_) : status;
}
