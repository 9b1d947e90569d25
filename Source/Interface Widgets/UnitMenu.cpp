#include "Interface Widgets/UnitMenu.h"

#include <algorithm>

#include "Interface Widgets/UnitMenuItem.h"

namespace {

const ArchivableClass kClass("UnitMenu", UnitMenu::Instantiate);

}  // namespace

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
