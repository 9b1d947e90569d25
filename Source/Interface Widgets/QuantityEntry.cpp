#include "QuantityEntry.h"

#include "BMenuField.h"
#include "BMessage.h"
#include "EntryTexts.h"
#include "InterfaceTexts.h"
#include "NumberBox.h"
#include "QuantityLine.h"
#include "UnitField.h"
#include "UnitMenu.h"

QuantityEntry::QuantityEntry(const char* name, const char* label, EpochPortal* portal,
                             const UnitTable* units, const BMessage& unitMenuField,
                             const InterfaceTexts& texts)
    : ValueEntry(name, B_HORIZONTAL, portal),
      number_(new QuantityLine("number", label, units, texts, new BMessage(kEntered))),
      unitField_(MakeUnitField(unitMenuField, (label + texts.Label(kTextUnit)).c_str())),
      units_(UnitMenuOf(unitField_)) {
    number_->SetStretch(1, 0);
    AddChild(number_);
    if (unitField_ != nullptr) AddChild(unitField_);
}

void QuantityEntry::AttachedToWindow() {
    number_->SetTarget(this);
    if (units_ != nullptr) units_->SetTargetForItems(this);
}

void QuantityEntry::SetEnabled(bool isEnabled) {
    number_->SetEnabled(isEnabled);
    if (unitField_ != nullptr) unitField_->SetEnabled(isEnabled);
}

void QuantityEntry::SetEditable(bool isEditable) {
    number_->SetEditable(isEditable);
}

void QuantityEntry::Present(const std::optional<DimValue>& value, bool replacesAll) {
    number_->ShowValue(value, replacesAll);
    if (value && units_ != nullptr) units_->SetUval(value->Uval());
}

bool QuantityEntry::Commit() {
    std::optional<std::string> typed;
    const Source source = TakePending([&] { typed = number_->TakeText(); });
    if (!typed || !source) return false;
    const std::optional<DimValue> value = number_->Read(*typed, *source.value);
    if (!value) return false;
    if (CommitEntry(Portal(), *source.factory, *value)) return true;
    if (!(*value == *source.value)) number_->RefuseRange(*source.value);
    return false;
}

void QuantityEntry::ChooseUnit(double uval) {
    Commit();  // in the unit in which it was typed
    const Source source = Shown();
    if (!source) return;
    // Nothing is left that would be read in the new unit.
    number_->ShowValue(source.value, true);
    Portal()->ReadLock();
    DimValue value = source.factory->Current(*Portal());
    value.SetUval(uval);
    std::unique_ptr<LCommand> command = source.factory->MakeCommand(Portal(), value);
    Portal()->ReadUnlock();
    ExecuteFiled(Portal(), std::move(command));
}

void QuantityEntry::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kEntered:
            Commit();
            break;
        case NumberBox::kUnitChosen: {
            double uval = 0.0;
            if (message->FindDouble("Units Pref", &uval) == B_OK) ChooseUnit(uval);
            break;
        }
        default:
            Entry::MessageReceived(message);
    }
}
