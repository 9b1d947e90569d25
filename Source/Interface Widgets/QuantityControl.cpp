#include "Interface Widgets/QuantityControl.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/NumberTextControl.h"
#include "Resources/SettingsFeatures.h"

QuantityControl::QuantityControl(const char* name, const char* label, EpochPortal* portal,
                                 const UnitTable* units, const BMessage& unitMenuField,
                                 const InterfaceTexts& texts)
    : DimensionalControl(name, B_HORIZONTAL, portal, unitMenuField,
                         (label + texts.Label(kTextUnit)).c_str()),
      number_(new NumberTextControl("number", label, units, texts, new BMessage(kEntered))) {
    number_->SetStretch(1, 0);
    AddChild(number_);
    if (UnitField() != nullptr) AddChild(UnitField());
}

void QuantityControl::AttachedToWindow() {
    number_->SetTarget(this);
    DimensionalControl::AttachedToWindow();
}

void QuantityControl::ShowEnabled(bool isEnabled) {
    number_->SetEnabled(isEnabled);
    DimensionalControl::ShowEnabled(isEnabled);
}

void QuantityControl::SetEditable(bool isEditable) {
    number_->SetEditable(isEditable);
}

void QuantityControl::SetFaded(bool isFaded) {
    number_->SetFaded(isFaded);
}

void QuantityControl::Present(const std::optional<DimValue>& value, bool replacesAll) {
    number_->ShowValue(value, replacesAll);
    if (value) ShowUnit(value->Uval());
}

bool QuantityControl::CommitPending() {
    std::optional<std::string> typed;
    const Source source = TakePending([&] { typed = number_->TakeText(); });
    if (!typed || !source) return false;
    const std::optional<DimValue> value = number_->Read(*typed, *source.value);
    if (!value) return false;
    if (CommitEntry(Portal(), *source.factory, *value)) return true;
    if (!(*value == *source.value)) number_->RefuseRange(*source.value);
    return false;
}
