#include "NumberBox.h"

#include <charconv>
#include <memory>
#include <optional>

#include "AbbreviatedMenuField.h"
#include "BMessage.h"
#include "BTextControl.h"
#include "UnitMenu.h"

namespace {

constexpr int kDigits = 10;
constexpr int32 kColumns = 14;

std::string NumberText(double value) {
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDigits).ptr;
    return {text, end};
}

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
    BMessage archive(unitMenuField);
    std::unique_ptr<BArchivable> object(instantiate_object(&archive));
    if (auto* const field = dynamic_cast<BMenuField*>(object.get()); field != nullptr) {
        object.release();
        menu_ = dynamic_cast<UnitMenu*>(field->Menu());
        AddChild(field);
    }
    // The first unit is marked until another one is asked for.
    if (menu_ != nullptr && menu_->FindMarked() == nullptr && menu_->CountItems() > 0)
        menu_->ItemAt(0)->SetMarked(true);
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

void NumberBox::ShowValue() {
    number_->SetText(NumberText(value_ / Uval()).c_str());
}

bool NumberBox::Commit() {
    const std::string shown = NumberText(value_ / Uval());
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
