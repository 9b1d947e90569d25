#include "Interface Widgets/NumberTextControl.h"

#include <cmath>
#include <limits>

#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Resources/SettingsFeatures.h"

namespace {

constexpr int32 kColumns = 18;   // all digits of a number, a sign and a point
constexpr int kBriefDigits = 7;  // where nobody edits
constexpr double kLostPart = 16.0 * std::numeric_limits<double>::epsilon();

}  // namespace

NumberTextControl::NumberTextControl(const char* name, const char* label, const UnitTable* units,
                                     const InterfaceTexts& texts, BMessage* message)
    : BEntryControl(name, label, message), units_(units), texts_(texts) {
    SetColumns(kColumns);
}

// A document may hold a unit that no table has: the number is that of the unit which is shown.
double NumberTextControl::FactorFor(double uval) const {
    const UnitInfo* const unit = units_ == nullptr ? nullptr : units_->FindNearest(uval);
    return unit == nullptr ? 1.0 : unit->factor;
}

// What was typed and went through a sum, as one relative to another body does, may have lost its
// last place or two.
double NumberTextControl::AsTyped(double value) const {
    const std::lock_guard lock(mutex_);
    const bool isIt = typed_ && std::abs(value - *typed_) <= kLostPart * std::abs(*typed_);
    return isIt ? *typed_ : value;
}

BEntryControl::Writing NumberTextControl::WritingOf(const DimValue& value) const {
    const double factor = FactorFor(value.Uval());
    const std::string unit =
        showsUnit_ && units_ != nullptr ? ' ' + units_->Abbreviation(factor) : std::string();
    const double shown = AsTyped(value.Value());
    return {QuantityText(shown, factor) + unit, print_double(shown / factor, kBriefDigits) + unit};
}

void NumberTextControl::ShowValue(const std::optional<DimValue>& value, bool replacesAll) {
    Write(value ? WritingOf(*value) : Writing(""), replacesAll);
}

void NumberTextControl::ShowBrief(const DimValue& value, bool replacesAll) {
    Write(WritingOf(value).brief, replacesAll);
}

void NumberTextControl::Write(const Writing& writing, bool replacesAll) {
    if (replacesAll)
        SetText(writing);
    else
        ShowText(writing);
}

std::optional<DimValue> NumberTextControl::Read(const std::string& text, const DimValue& inForce) {
    static const UnitTable kNoUnits;
    const UnitTable& units = units_ == nullptr ? kNoUnits : *units_;
    const UnitTable::Parsed parsed = units.ParseTyped(text, FactorFor(inForce.Uval()));
    if (parsed) {
        const double uval = parsed.unit == nullptr ? inForce.Uval() : parsed.unit->factor;
        const DimValue value(parsed.value, uval);
        {
            const std::lock_guard lock(mutex_);
            typed_ = parsed.value;
        }
        AcceptText(WritingOf(value));
        return value;
    }
    const bool isUnit = parsed.error == UnitTable::ParseError::kUnknownUnit && units_ != nullptr;
    RefuseText(WritingOf(inForce), WhyNot(isUnit ? kTextUnknownUnit : kTextNotANumber).c_str());
    return std::nullopt;
}

void NumberTextControl::RefuseRange(const DimValue& inForce) {
    RefuseText(WritingOf(inForce), texts_.Text(kTextOutOfRange));
}

// Says what would have been understood.
std::string NumberTextControl::WhyNot(int32 reason) const {
    std::string why = texts_.Label(reason);
    if (units_ == nullptr) return why;
    why += '\n' + texts_.Label(kTextUnitsAre);
    const char* separator = "";
    for (const std::string_view unit : units_->Abbreviations()) {
        why += separator;
        why += unit;
        separator = texts_.Text(kTextBetweenUnits);
    }
    return why;
}
