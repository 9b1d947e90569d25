#include "Interface Widgets/AbbrevMenuField.h"

namespace {

const ArchivableClass kClass("AbbrevMenuField", AbbrevMenuField::Instantiate);

}  // namespace

AbbrevMenuField::AbbrevMenuField(const char* name, const char* label, BMenu* menu)
    : BMenuField(name, label, menu) {}

AbbrevMenuField::AbbrevMenuField(BMessage* archive) : BMenuField(archive) {}

BArchivable* AbbrevMenuField::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "AbbrevMenuField") ? new AbbrevMenuField(archive)
                                                              : nullptr;
}
