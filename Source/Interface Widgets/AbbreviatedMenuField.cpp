#include "Interface Widgets/AbbreviatedMenuField.h"

namespace {

const ArchivableClass kClass("AbbreviatedMenuField", AbbreviatedMenuField::Instantiate);

}  // namespace

AbbreviatedMenuField::AbbreviatedMenuField(const char* name, const char* label, BMenu* menu)
    : BMenuField(name, label, menu) {}

AbbreviatedMenuField::AbbreviatedMenuField(BMessage* archive) : BMenuField(archive) {}

BArchivable* AbbreviatedMenuField::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "AbbreviatedMenuField")
               ? new AbbreviatedMenuField(archive)
               : nullptr;
}
