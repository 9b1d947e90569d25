#include "Interface Widgets/QuantityEntry.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/QuantityLine.h"
#include "Resources/SettingsFeatures.h"

QuantityEntry::QuantityEntry(const char* name, const char* label, EpochPortal* portal,
                             const UnitTable* units, const BMessage& unitMenuField,
                             const InterfaceTexts& texts)
    : DimensionalEntry(name, B_HORIZONTAL, portal, unitMenuField,
                       (label + texts.Label(kTextUnit)).c_str()),
      number_(new QuantityLine("number", label, units, texts, new BMessage(kEntered))) {
    number_->SetStretch(1, 0);
    AddChild(number_);
    if (UnitField() != nullptr) AddChild(UnitField());
}

void QuantityEntry::AttachedToWindow() {
    number_->SetTarget(this);
    DimensionalEntry::AttachedToWindow();
}

void QuantityEntry::ShowEnabled(bool isEnabled) {
    number_->SetEnabled(isEnabled);
    DimensionalEntry::ShowEnabled(isEnabled);
}

void QuantityEntry::SetEditable(bool isEditable) {
    number_->SetEditable(isEditable);
}

void QuantityEntry::Present(const std::optional<DimValue>& value, bool replacesAll) {
    number_->ShowValue(value, replacesAll);
    if (value) ShowUnit(value->Uval());
}

bool QuantityEntry::CommitPending() {
    std::optional<std::string> typed;
    const Source source = TakePending([&] { typed = number_->TakeText(); });
    if (!typed || !source) return false;
    const std::optional<DimValue> value = number_->Read(*typed, *source.value);
    if (!value) return false;
    if (CommitEntry(Portal(), *source.factory, *value)) return true;
    if (!(*value == *source.value)) number_->RefuseRange(*source.value);
    return false;
}
