#include "QuantityLine.h"

#include "BMessage.h"
#include "EntryTexts.h"
#include "InterfaceTexts.h"
#include "QuantityText.h"
#include "UnitTable.h"

namespace {

constexpr int32 kColumns = 18;  // all digits of a number, a sign and a point

}  // namespace

QuantityLine::QuantityLine(const char* name, const char* label, const UnitTable* units,
                           const InterfaceTexts& texts, BMessage* message)
    : BEntryControl(name, label, message), units_(units), texts_(texts) {
    SetColumns(kColumns);
}

// A document may hold a unit that no table has: the number is that of the unit which is shown.
double QuantityLine::FactorFor(double uval) const {
    const UnitInfo* const unit = units_ == nullptr ? nullptr : units_->FindNearest(uval);
    return unit == nullptr ? 1.0 : unit->factor;
}

std::string QuantityLine::TextOf(const DimValue& value) const {
    return QuantityText(value.Value(), FactorFor(value.Uval()));
}

void QuantityLine::ShowValue(const std::optional<DimValue>& value, bool replacesAll) {
    const std::string text = value ? TextOf(*value) : "";
    if (replacesAll)
        SetText(text.c_str());
    else
        ShowText(text.c_str());
}

std::optional<DimValue> QuantityLine::Read(const std::string& text, const DimValue& inForce) {
    static const UnitTable kNoUnits;
    const UnitTable& units = units_ == nullptr ? kNoUnits : *units_;
    const UnitTable::Parsed parsed = units.Parse(text, FactorFor(inForce.Uval()));
    if (parsed) {
        const double uval = parsed.unit == nullptr ? inForce.Uval() : parsed.unit->factor;
        const DimValue value(parsed.value, uval);
        AcceptText(TextOf(value).c_str());
        return value;
    }
    const bool isUnit = parsed.error == UnitTable::ParseError::kUnknownUnit && units_ != nullptr;
    RefuseText(TextOf(inForce).c_str(), texts_.Text(isUnit ? kTextUnknownUnit : kTextNotANumber));
    return std::nullopt;
}

void QuantityLine::RefuseRange(const DimValue& inForce) {
    RefuseText(TextOf(inForce).c_str(), texts_.Text(kTextOutOfRange));
}
