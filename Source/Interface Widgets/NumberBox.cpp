#include "Interface Widgets/NumberBox.h"

#include <optional>
#include <string>

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/NumberTextControl.h"
#include "Interface Widgets/UnitMenu.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Resources/SettingsFeatures.h"

NumberBox::NumberBox(const char* name, const char* label, const UnitTable* units,
                     const BMessage& unitMenuField, const InterfaceTexts& texts)
    : BGroupView(name, B_HORIZONTAL),
      number_(new NumberTextControl("number", label, units, texts, new BMessage(kNumberEntered))) {
    number_->SetRightAligned(true);
    AddChild(number_);
    const std::string unitLabel = label + texts.Label(kTextUnit);
    if (BMenuField* const field = MakeUnitField(unitMenuField, unitLabel.c_str());
        field != nullptr) {
        menu_ = UnitMenuOf(field);
        AddChild(field);
    }
}

double NumberBox::Uval() const {
    return menu_ == nullptr ? 1.0 : menu_->Uval();
}

void NumberBox::SetUval(double uval) {
    if (menu_ != nullptr) menu_->SetUval(uval);
    ShowValue();
}

void NumberBox::SetValue(double value) {
    value_ = value;
    ShowValue();
}

void NumberBox::SetValueUnderHand(double value) {
    value_ = value;
    number_->ShowBrief(Shown(), false);
}

void NumberBox::ShowValue() {
    number_->ShowBrief(Shown(), true);
}

bool NumberBox::Commit() {
    const std::optional<std::string> typed = number_->TakeText();
    if (!typed) return false;
    const std::optional<DimValue> value = number_->Read(*typed, Shown());
    if (!value) return false;
    const bool isOther = value->Value() != value_;
    value_ = value->Value();
    if (menu_ != nullptr) menu_->SetUval(value->Uval());
    return isOther;
}

void NumberBox::MakeFocus(bool isFocus) {
    number_->MakeFocus(isFocus);
    if (isFocus) number_->SelectAll();
}
