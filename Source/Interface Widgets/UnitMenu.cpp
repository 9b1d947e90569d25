#include "Interface Widgets/UnitMenu.h"

#include <algorithm>
#include <memory>

#include "Interface Widgets/AbbrevMenuField.h"
#include "Model/Units/DimValue.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kUval = "uval";

const ArchivableClass kItemClass("UnitMenuItem", UnitMenuItem::Instantiate);
const ArchivableClass kClass("UnitMenu", UnitMenu::Instantiate);

constexpr int32 kColumns = 5;  // "AU/dy"

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

UnitMenu::UnitMenu(const char* name, bool isRadioMode, bool isLabelFromMarked)
    : BPopUpMenu(name, isRadioMode, isLabelFromMarked) {}

UnitMenu::UnitMenu(BMessage* archive) : BPopUpMenu(archive) {}

BArchivable* UnitMenu::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "UnitMenu") ? new UnitMenu(archive) : nullptr;
}

double UnitMenu::Uval() const {
    const auto* const marked = dynamic_cast<UnitMenuItem*>(FindMarked());
    return marked == nullptr ? 1.0 : marked->Uval();
}

UnitMenuItem* UnitMenu::UnitAt(int32 index) const {
    return dynamic_cast<UnitMenuItem*>(ItemAt(index));
}

void UnitMenu::SetUval(double uval) {
    // With nothing marked Uval() is 1, so 1 marks nothing: deliberately so.
    if (uval == Uval()) return;
    UnitMenuItem* nearest = nullptr;
    double least = 0.0;
    for (int32 i = 0; i < CountItems(); i++) {
        UnitMenuItem* const item = UnitAt(i);
        if (item == nullptr) continue;
        // An exact match has the ratio 1, which none is below.
        const double ratio = std::max(item->Uval(), uval) / std::min(item->Uval(), uval);
        if (nearest == nullptr || ratio < least || item->Uval() == uval) {
            nearest = item;
            least = ratio;
            if (item->Uval() == uval) break;
        }
    }
    if (nearest != nullptr) nearest->SetMarked(true);
}

BMenuField* MakeUnitField(const BMessage& archive, const char* label) {
    BMessage copy(archive);
    auto* const field = InstantiateAs<BMenuField>(&copy).release();
    if (field == nullptr) return nullptr;
    field->SetColumns(kColumns);
    field->SetAccessibleName(label);
    // The first unit is marked until another one is asked for.
    const UnitMenu* const menu = UnitMenuOf(field);
    if (menu != nullptr && menu->FindMarked() == nullptr && menu->CountItems() > 0)
        menu->ItemAt(0)->SetMarked(true);
    return field;
}

UnitMenu* UnitMenuOf(const BMenuField* field) {
    return field == nullptr ? nullptr : dynamic_cast<UnitMenu*>(field->Menu());
}
