#include "Interface Widgets/UnitMenuItem.h"

#include "Interface Widgets/UnitMenu.h"
#include "Model/Units/DimValue.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kUval = "uval";

const ArchivableClass kClass("UnitMenuItem", UnitMenuItem::Instantiate);

}  // namespace

UnitMenuItem::UnitMenuItem(const char* label, const char* abbreviation, double uval,
                           BMessage* message, char shortcut, uint32 modifiers)
    : AbbrevMenuItem(label, abbreviation, nullptr, shortcut, modifiers) {
    SetUval(uval);
    UnitMenuItem::SetMessage(message);
}

UnitMenuItem::UnitMenuItem(BMessage* archive) : AbbrevMenuItem(archive) {
    double uval = 1.0;
    if (archive != nullptr && archive->FindDouble(kUval, &uval) == B_OK) SetUval(uval);
}

BArchivable* UnitMenuItem::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "UnitMenuItem") ? new UnitMenuItem(archive) : nullptr;
}

status_t UnitMenuItem::Archive(BMessage* into, bool deep) const {
    const status_t status = AbbrevMenuItem::Archive(into, deep);
    return status == B_OK ? into->AddDouble(kUval, uval_) : status;
}

void UnitMenuItem::SetUval(double uval) {
    if (IsValidUval(uval)) uval_ = uval;
}

status_t UnitMenuItem::SetMessage(BMessage* message) {
    if (message != nullptr) {
        message->RemoveName(UnitMenu::kUnitField);
        message->AddDouble(UnitMenu::kUnitField, uval_);
    }
    return AbbrevMenuItem::SetMessage(message);
}
