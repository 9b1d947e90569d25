#include "Interface Widgets/UnitField.h"

#include <memory>

#include "Interface Widgets/AbbrevMenuField.h"
#include "Interface Widgets/UnitMenu.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr int32 kColumns = 5;  // "AU/dy"

}  // namespace

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
