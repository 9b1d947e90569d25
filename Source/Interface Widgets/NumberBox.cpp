#include "NumberBox.h"

#include <optional>

#include "BMenuField.h"
#include "BMessage.h"
#include "BTextControl.h"
#include "QuantityText.h"
#include "UnitField.h"
#include "UnitMenu.h"

namespace {

constexpr int32 kColumns = 14;

}  // namespace

NumberBox::NumberBox(const char* name, const char* accessibleName, const UnitTable* units,
                     const BMessage& unitMenuField)
    : BGroupView(name, B_HORIZONTAL),
      units_(units),
      number_(new BTextControl("number", nullptr, "", new BMessage(kNumberEntered))) {
    number_->SetColumns(kColumns);
    number_->SetRightAligned(true);
    number_->SetAccessibleName(accessibleName);
    AddChild(number_);
    if (BMenuField* const field = MakeUnitField(unitMenuField, accessibleName); field != nullptr) {
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
    const bool isTyped =
        number_->HasPendingText() || number_->Text() != print_double(value_ / Uval());
    value_ = value;
    if (!isTyped) ShowValue();
}

void NumberBox::ShowValue() {
    number_->SetText(print_double(value_ / Uval()).c_str());
}

bool NumberBox::Commit() {
    const std::string shown = print_double(value_ / Uval());
    const std::optional<std::string> pending = number_->TakePendingText();
    const std::string typed = pending.value_or(number_->Text());
    if (typed == shown) return false;
    const UnitTable::Parsed parsed = units_->Parse(typed, Uval());
    const bool isOther = parsed && parsed.value != value_;
    if (parsed) {
        value_ = parsed.value;
        if (parsed.unit != nullptr && menu_ != nullptr) menu_->SetUval(parsed.unit->factor);
    }
    ShowValue();
    return isOther;
}

void NumberBox::MakeFocus(bool isFocus) {
    number_->MakeFocus(isFocus);
    if (isFocus) number_->SelectAll();
}
